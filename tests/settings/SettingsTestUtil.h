// Building, reading and parsing settings documents for the settings tests.
#ifndef ZRX_TESTS_SETTINGSTESTUTIL_H
#define ZRX_TESTS_SETTINGSTESTUTIL_H

#include <zrparsexmlr/ZRSettingsParser.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <tuple>

namespace settingstest {

// A settings document with the given DataField elements and Parameters content.
inline std::string Doc(const std::string& fields, const std::string& parameters)
{
    const std::string task = "<MiningBuildTask><Extension><Parameters>" + parameters;
    return "<PMML><DataDictionary>" + fields + "</DataDictionary>" + task +
           "</Parameters></Extension></MiningBuildTask></PMML>";
}

inline ZRCommon::ZRStatus Parse(ZRXPrsUtil::ZRSettingsParser& parser, const std::string& text)
{
    std::istringstream in(text);
    return parser.ParseToDOM(in);
}

// A document of tests/data/settings, or "example" for the example job.
inline ZRCommon::ZRStatus ParseFile(ZRXPrsUtil::ZRSettingsParser& parser, const std::string& name)
{
    std::ifstream in(name == "example" ? ZRX_EXAMPLES_DIR "/data/job.settings.xml"
                                       : ZRX_TEST_DATA_DIR "/settings/" + name,
                     std::ios::binary);
    return parser.ParseToDOM(in);
}

// The code of a query's answer; the flag must be set for 120 and 123 only.
inline long Code(const ZRCommon::ZRStatus& status)
{
    const long code = status.GetCode();
    EXPECT_EQ(status.GetFlag(), code == 120 || code == 123) << code;
    return code;
}

// Calls `read` on a copy of `out`: expects the code and what `out` holds then.
template <class T, class Read>
void ExpectRead(const Read& read, T out, long code, const T& expected, const std::string& what)
{
    EXPECT_EQ(Code(read(out)), code) << what;
    EXPECT_EQ(out, expected) << what;
}

} // namespace settingstest

#endif
