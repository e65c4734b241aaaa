// The split analysis of the example job: one churn tree per sales region lies
// in data/split/churn_<region>.pmml. The combiner merges them into one PMML
// document whose segments pick the tree by the record's region.
#include "steps.h"

#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>
#include <zrcommonr/ZRVarList.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

int CombineStep(const std::string& dataDir, const std::string& outDir, std::ostream& out)
{
    namespace fs = std::filesystem;
    const std::string prefix = "churn_";
    const std::string suffix = ".pmml";

    // The split models and the region each was built for, in name order.
    std::vector<std::pair<std::string, std::string>> models;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(dataDir + "/split", error)) {
        const std::string name = entry.path().filename().string();
        if (name.size() > prefix.size() + suffix.size() && name.rfind(prefix, 0) == 0 &&
            name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0)
            models.emplace_back(
                entry.path().string(),
                name.substr(prefix.size(), name.size() - prefix.size() - suffix.size()));
    }
    std::sort(models.begin(), models.end());
    if (models.empty()) {
        out << "combine: no split models in " << dataDir << "/split\n";
        return 1;
    }

    ZRMTD_NAMESPACE::ZRVarList splitVars;
    std::vector<std::string> regions;
    for (const auto& model : models)
        regions.push_back(model.second);
    splitVars.AddCatVar("region", "Sales region", regions,
                        ZRMTD_NAMESPACE::IZRVariable::eRoleInput);

    ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(splitVars);
    for (const auto& model : models) {
        const ZRCommon::ZRStatus status = combiner.AddModel(model.first, {model.second});
        if (!status.IsOK()) {
            out << "combine: " << model.first << " refused with status " << status.GetCode()
                << "\n";
            return 1;
        }
    }

    fs::create_directories(outDir, error);
    const std::string target = outDir + "/churn_by_region.pmml";
    const int count = combiner.GetNModels();
    const ZRCommon::ZRStatus written = combiner.ExportMiningModel(target);
    if (!written.IsOK()) {
        out << "combine: can't write " << target << " (status " << written.GetCode() << ")\n";
        return 1;
    }
    out << "combine: " << count << " split models over region (";
    for (std::size_t i = 0; i < regions.size(); ++i)
        out << (i > 0 ? ", " : "") << regions[i];
    out << ") -> " << target << " (" << fs::file_size(target, error) << " bytes)\n";
    return 0;
}
