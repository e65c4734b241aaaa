#include "steps.h"

int CombineStep(const std::string&, const std::string&, std::ostream& out)
{
    out << "combine: not built yet\n";
    return 0;
}
