// examples/snippets/varlist.cpp
#include <zrcommonr/zrcommonr.h>

#include <string>
#include <vector>

std::string FirstValue()
{
    ZRMTD_NAMESPACE::ZRVarList vars; // what the readers fill
    int i = vars.AddCatVar("region", "Sales region", std::vector<std::string>{"N", "S"},
                           ZRMTD_NAMESPACE::IZRVariable::eRoleInput); // -1 if refused
    if (i < 0)
        return "";
    const ZRMTD_NAMESPACE::IZRVariable* v = vars.GetVarAt(i);
    return v->GetEncoder()->GetValueText(0); // "N"
}
