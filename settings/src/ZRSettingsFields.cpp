// ZRSettingsParser::FillVarList and FillTransDict: DataField and DerivedField
// elements as variables of a ZRVarList, read by the shared field reader. The
// two differ in where Interval margins may stand (a DerivedField may also
// keep its Interval in an Extension) and in the use of bins.
#include <zrparsexmlr/ZRSettingsParser.h>

#include "ZRPMMLInternal.h"
#include "ZRSettingsInternal.h"
#include "ZRXFieldReader.h"

#include <string>
#include <vector>

namespace ZRXPrsUtil {

ZRCommon::ZRStatus ZRSettingsParser::FillVarList(ZRMTD_NAMESPACE::ZRVarList& varList,
                                                 bool useBins) const
try {
    ZRCommon::ZRStatus result = status;
    if (result.IsOK() && document == nullptr)
        result = Settings::Fail(ZRCommon::eNoDocument);
    if (!result.IsOK() || dataDictionary == nullptr)
        return result;
    const FieldBinsLookup bins = [this](const std::string& name, std::vector<double>& cuts,
                                        std::vector<std::string>& labels) {
        return transDictionary != nullptr && SetBinsFrTransDict(name, cuts, labels);
    };
    DictionaryOptions options;
    options.bins = useBins ? &bins : nullptr;
    if (const FieldStore* fields = RecordedFields(parser))
        return ReadFieldStore(varList, *fields, kSettingsDataFieldRules, options);
    return ReadFieldDictionary(varList, *dataDictionary, "DataField", kSettingsDataFieldRules,
                               options);
} catch (...) {
    return Settings::Fail(ZRCommon::eOutOfMemory);
}

ZRCommon::ZRStatus ZRSettingsParser::FillTransDict(ZRMTD_NAMESPACE::ZRVarList& varList) const
try {
    ZRCommon::ZRStatus result = status;
    if (result.IsOK() && document == nullptr)
        result = Settings::Fail(ZRCommon::eNoDocument);
    if (!result.IsOK() || transDictionary == nullptr)
        return result;
    return ReadFieldDictionary(varList, *transDictionary, "DerivedField",
                               kSettingsDerivedFieldRules, DictionaryOptions());
} catch (...) {
    return Settings::Fail(ZRCommon::eOutOfMemory);
}

} // namespace ZRXPrsUtil
