// Shared by the DataModel reader tests.
#ifndef ZRX_DATAMODEL_TEST_UTIL_H
#define ZRX_DATAMODEL_TEST_UTIL_H

#include <zrparsexmlr/ZRDataModelParser.h>

#include <string>

namespace zrxtest {

inline std::string Model(const std::string& fields)
{
    return "<DataModel><Fields>" + fields + "</Fields></DataModel>";
}

// Parses `text` and fills `list`: the code of the first failing step, or 0.
inline long ParseAndFill(const std::string& text, ZRMTD_NAMESPACE::ZRVarList& list,
                         bool alternateInputRole = false, bool useBins = false, int binCount = 0)
{
    ZRXPrsUtil::ZRDataModelParser parser;
    const ZRCommon::ZRStatus parsed = parser.ParseToDOM(text);
    if (!parsed.IsOK())
        return parsed.GetCode();
    return parser.FillVarList(list, alternateInputRole, useBins, binCount).GetCode();
}

} // namespace zrxtest

#endif
