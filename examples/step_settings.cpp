#include "steps.h"

int SettingsStep(const std::string&, std::ostream& out)
{
    out << "settings: not built yet\n";
    return 0;
}
