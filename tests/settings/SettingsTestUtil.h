// Building and parsing small settings documents for the settings tests.
#ifndef ZRX_TESTS_SETTINGSTESTUTIL_H
#define ZRX_TESTS_SETTINGSTESTUTIL_H

#include <zrparsexmlr/ZRSettingsParser.h>

#include <fstream>
#include <limits>
#include <sstream>
#include <string>

namespace settingstest {

constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kHighest = std::numeric_limits<double>::max();

// A settings document with the given DataField elements, Parameters content
// and, when not empty, TransformationDictionary content.
inline std::string Doc(const std::string& fields, const std::string& parameters,
                       const std::string& derived = std::string())
{
    std::string text = "<PMML version=\"4.4\"><DataDictionary>" + fields + "</DataDictionary>";
    if (!derived.empty())
        text += "<TransformationDictionary>" + derived + "</TransformationDictionary>";
    return text + "<MiningBuildTask><Extension><Parameters>" + parameters +
           "</Parameters></Extension></MiningBuildTask></PMML>";
}

inline std::string Params(const std::string& parameters) { return Doc("", parameters); }

inline ZRCommon::ZRStatus Parse(ZRXPrsUtil::ZRSettingsParser& parser, const std::string& text)
{
    std::istringstream in(text);
    return parser.ParseToDOM(in);
}

inline ZRCommon::ZRStatus ParseExample(ZRXPrsUtil::ZRSettingsParser& parser)
{
    std::ifstream in(std::string(ZRX_EXAMPLES_DIR) + "/data/job.settings.xml", std::ios::binary);
    return parser.ParseToDOM(in);
}

} // namespace settingstest

#endif
