// Shared pieces of the PMML reader tests: documents from text, and a parser
// that opens its protected helpers.
#ifndef ZRX_TESTS_PMMLTESTSUPPORT_H
#define ZRX_TESTS_PMMLTESTSUPPORT_H

#include <zrparsexmlr/ZRPMMLParser.h>

#include <xercesc/dom/DOM.hpp>

#include <sstream>
#include <string>
#include <vector>

namespace pmmltest {

// Opens the protected operations, as a derived reader sees them.
class Parser : public ZRXPrsUtil::ZRPMMLParser {
public:
    using ZRPMMLParser::ExtractInterval;
    using ZRPMMLParser::FillCutPointsFreqs;
    using ZRPMMLParser::FillUniStatsCat;
    using ZRPMMLParser::FillUniStatsCont;
    using ZRPMMLParser::SetBinsFrTransDict;

    long Parse(const std::string& text) {
        std::istringstream stream(text);
        return ParseToDOM(stream).GetCode();
    }
    // The first element of that tag in the held document.
    const xercesc::DOMElement* Find(const char16_t* tag) const {
        return static_cast<const xercesc::DOMElement*>(
            document->getElementsByTagName(tag)->item(0));
    }
};

// A PMML document with the given DataDictionary content and what follows it.
inline std::string Doc(const std::string& dictionary, const std::string& rest = "") {
    return "<PMML version=\"4.4\"><Header/><DataDictionary>" + dictionary + "</DataDictionary>" +
           rest + "</PMML>";
}

inline std::string Field(const std::string& name, const std::string& dataType,
                         const std::string& optype, const std::string& children = "") {
    return "<DataField name=\"" + name + "\" dataType=\"" + dataType + "\" optype=\"" + optype +
           "\">" + children + "</DataField>";
}

} // namespace pmmltest

#endif
