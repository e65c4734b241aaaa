// Shared pieces of the PMML reader tests: documents from text or file, and a
// parser that opens its protected helpers.
#ifndef ZRX_TESTS_PMMLTESTSUPPORT_H
#define ZRX_TESTS_PMMLTESTSUPPORT_H

#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrcommonr/ZRMV.h>

#include <xercesc/dom/DOM.hpp>

#include <fstream>
#include <limits>
#include <sstream>
#include <string>

namespace pmmltest {

// Opens the protected operations, as a derived reader sees them.
class Parser : public ZRXPrsUtil::ZRPMMLParser {
public:
    using ZRPMMLParser::FillCutPointsFreqs;
    using ZRPMMLParser::SetBinsFrTransDict;

    long Parse(const std::string& text) {
        std::istringstream stream(text);
        return ParseToDOM(stream).GetCode();
    }
    long ParseFile(const std::string& path) {
        std::ifstream stream(path, std::ios::binary);
        return ParseToDOM(stream).GetCode();
    }
    // The element of that tag and index, in document order, in the held document.
    const xercesc::DOMElement* Find(const char16_t* tag, std::size_t index = 0) const {
        return static_cast<const xercesc::DOMElement*>(
            document->getElementsByTagName(tag)->item(index));
    }
};

const std::string kDictionary = ZRX_TEST_DATA_DIR "/pmml/dictionary.pmml";

// A PMML document with the given DataDictionary content and what follows it.
inline std::string Doc(const std::string& dictionary, const std::string& rest = "") {
    return "<PMML><DataDictionary>" + dictionary + "</DataDictionary>" + rest + "</PMML>";
}

inline std::string Field(const std::string& name, const std::string& dataType,
                         const std::string& optype = "continuous") {
    return "<DataField name=\"" + name + "\" dataType=\"" + dataType + "\" optype=\"" + optype +
           "\"/>";
}

// Numbers as short text: "M" the missing value, "lo" and "hi" the open bounds.
inline std::string Num(double value) {
    if (ZRMV::IsMissing(value))
        return "M";
    if (value == std::numeric_limits<double>::lowest() || value == std::numeric_limits<double>::max())
        return value < 0 ? "lo" : "hi";
    std::ostringstream text;
    text << value;
    return text.str();
}

inline std::string ToText(const char16_t* text) {
    std::string result;
    for (; *text; ++text)
        result += static_cast<char>(*text);  // the tests' names are ASCII
    return result;
}

template <typename List, typename Show>
std::string Join(const List& list, Show show) {
    std::string text;
    bool first = true;
    for (const auto& item : list) {
        text += (first ? "" : "|") + show(item);
        first = false;
    }
    return text;
}
inline std::string Same(const std::string& text) {
    return text;
}

} // namespace pmmltest

#endif
