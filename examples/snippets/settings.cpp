// examples/snippets/settings.cpp
#include <zrparsexmlr/ZRSettingsParser.h>

#include <fstream>
#include <string>
#include <vector>

void ReadSettings(const char* path)
{
    ZRXPrsUtil::ZRSettingsParser settings;
    std::ifstream in(path, std::ios::binary);
    settings.ParseToDOM(in); // 119 without its Parameters
    ZRMTD_NAMESPACE::ZRVarList vars;
    settings.FillVarList(vars, /*useBins*/ false);
    settings.FillTransDict(vars); // derived fields
    std::vector<std::string> targets;
    settings.GetTargetVars(targets);
    int depth = 0;
    settings.GetParameter("maxTreeDepth", depth); // 120 (flag) if absent
    // a nested group: a handle, null if absent
    void* holdout =
        settings.GetComplexParameter("holdout", settings.GetComplexParameter("validation"));
    double share = 0.0;
    settings.GetParameter("sampleShare", share, holdout); // scoped to the nested group
}
