// Shared pieces of the PMML reader tests: documents from text or file, a
// parser that opens its protected helpers, variables as text and the walk
// through the statistics of a model.
#ifndef ZRX_TESTS_PMMLTESTSUPPORT_H
#define ZRX_TESTS_PMMLTESTSUPPORT_H

#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRSettingsParser.h>
#include <zrparsexmlr/ZRXPrsUtil.h>
#include "ZRPMMLBodyFilter.h"
#include <zrcommonr/ZRMV.h>
#include <zrcommonr/ZRUniStats.h>
#include <zrcommonr/ZRVarList.h>

#include <gtest/gtest.h>

#include <xercesc/dom/DOM.hpp>

#include <fstream>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

namespace pmmltest {

// Opens the protected operations, as a derived reader sees them.
class Parser : public ZRXPrsUtil::ZRPMMLParser {
public:
    using ZRPMMLParser::FillCutPointsFreqs;
    using ZRPMMLParser::SetBinsFrTransDict;

    long Parse(const std::string& text)
    {
        std::istringstream stream(text);
        return ParseToDOM(stream).GetCode();
    }
    long ParseFile(const std::string& path)
    {
        std::ifstream stream(path, std::ios::binary);
        return ParseToDOM(stream).GetCode();
    }
    // The element of that tag and index, in document order, in the held document.
    const xercesc::DOMElement* Find(const char16_t* tag, std::size_t index = 0) const
    {
        return static_cast<const xercesc::DOMElement*>(
            document->getElementsByTagName(tag)->item(index));
    }
    std::size_t Count(const char16_t* tag) const
    {
        return document ? document->getElementsByTagName(tag)->getLength() : 0;
    }
};

const std::string kDictionary = ZRX_TEST_DATA_DIR "/pmml/dictionary.pmml";

// A PMML document with the given DataDictionary content and what follows it.
inline std::string Doc(const std::string& dictionary, const std::string& rest = "")
{
    return "<PMML><DataDictionary>" + dictionary + "</DataDictionary>" + rest + "</PMML>";
}

inline std::string Field(const std::string& name, const std::string& dataType,
                         const std::string& optype = "continuous")
{
    return "<DataField name=\"" + name + "\" dataType=\"" + dataType + "\" optype=\"" + optype +
           "\"/>";
}

// Numbers as short text: "M" the missing value, "lo" and "hi" the open bounds.
inline std::string Num(double value)
{
    if (ZRMV::IsMissing(value))
        return "M";
    if (value == std::numeric_limits<double>::lowest() ||
        value == std::numeric_limits<double>::max())
        return value < 0 ? "lo" : "hi";
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << value;
    return text.str();
}

template <typename List, typename Show>
std::string Join(const List& list, Show show)
{
    std::string text;
    bool first = true;
    for (const auto& item : list) {
        text += (first ? "" : "|") + show(item);
        first = false;
    }
    return text;
}
inline std::string Same(const std::string& text)
{
    return text;
}

// A variable and its encoder as one line of text, so that a table of expected
// lines shows a whole dictionary at a glance. The line is
//
//     name kind;values;labels;missing values;invalid range;bins
//
// with six parts split by ";" (an empty part: nothing of that kind):
//   name kind       the field's name, a space and GetVarType (1 continuous,
//                   2 categorical numeric, 3 categorical string);
//   values          the encoder's valid values in order, split by "|":
//                   GetStringValues for kind 3, else GetNumericValues;
//   labels          GetValueLabels in order, split by "|";
//   missing values  "value=label" for each entry of GetNumericMissing, then
//                   of GetStringMissing, split by "|" ("8=" is 8 with no label);
//   invalid range   "lower..upper" if HasMissingRange, else empty;
//   bins            only if GetUseBins: "minimum..maximum", a space, the cut
//                   points split by "|", a space, the bin labels split by "|".
// Numbers are written by Num: "M" for the missing value, "lo" and "hi" for
// the lowest and highest double (an open bound), else the shortest decimal
// text. So "cat_num 2;1|M|2;one|none|inf;6=n/a|9=bad|8=;lo..100;" reads:
// cat_num is categorical numeric, with the values 1, missing and 2, labelled
// "one", "none" and "inf"; 6 ("n/a"), 9 ("bad") and 8 (no label) are missing
// values; everything from the lowest double to 100 is invalid; no bins.
inline std::string Describe(const ZRMetadata::IZRVariable& var, const ZRMetadata::IZREncoder& enc)
{
    const int type = var.GetVarType();
    std::string text =
        var.GetName() + " " + std::to_string(type) + ";" +
        (type == 3 ? Join(enc.GetStringValues(), Same) : Join(enc.GetNumericValues(), Num)) + ";" +
        Join(enc.GetValueLabels(), Same) + ";" +
        Join(enc.GetNumericMissing(), [](auto& m) { return Num(m.first) + "=" + m.second; }) +
        Join(enc.GetStringMissing(), [](auto& m) { return m.first + "=" + m.second; }) + ";";
    if (enc.HasMissingRange())
        text += Num(enc.GetMissingRangeLower()) + ".." + Num(enc.GetMissingRangeUpper());
    text += ";";
    if (var.GetUseBins())
        text += Num(var.GetMinimum()) + ".." + Num(var.GetMaximum()) + " " +
                Join(var.GetCutPoints(), Num) + " " + Join(enc.GetBinLabels(), Same);
    return text;
}

// A variable of `list` in the line form of Describe, then its storage code
// and, continuous and unbinned, its margins.
inline std::string Line(ZRMetadata::ZRVarList& list, int i)
{
    const ZRMetadata::IZRVariable& v = *list.GetVarAt(i);
    return Describe(v, *list.GetEncoderAt(i)) + " " + std::to_string(v.GetValueFormat()) +
           (v.GetVarType() == 1 && !v.GetUseBins()
                ? " " + Num(v.GetMinimum()) + ".." + Num(v.GetMaximum())
                : "");
}

// The status of each UnivariateStats of `model`, each read into an object
// from `make()`, which a failure must leave alone. With `results`, the objects
// afterwards.
template <typename Make>
std::vector<long> Walk(Parser& parser, const xercesc::DOMElement& model, Make make,
                       std::vector<ZRMetadata::ZRUniStats>* results = nullptr)
{
    EXPECT_TRUE(parser.SetModelElmt(model));
    std::vector<long> codes;
    const xercesc::DOMElement* position = nullptr;
    while (true) {
        ZRMetadata::ZRUniStats stats = make();
        const long code = parser.FillUniStats(stats, position).GetCode();
        if (!position)
            return codes;
        codes.push_back(code);
        EXPECT_TRUE(code == 0 || stats.GetFieldName() == make().GetFieldName()) << code;
        if (results)
            results->push_back(stats);
    }
}

inline bool IsModel(const xercesc::DOMNode& node)
{
    return node.getNodeType() == xercesc::DOMNode::ELEMENT_NODE &&
           ZRXPrsUtil::IsPMMLModelTag(node.getNodeName());
}

// What the reader gives of a parsed document: the parse, the variables with
// and without bins, and the statistics of each model that is a child of the
// root, with one object kept through each walk as a caller keeps it.
inline std::string BodiesReading(Parser& parser)
{
    std::string text = "parse " + std::to_string(parser.GetStatus().GetCode());
    for (const bool useBins : {false, true}) {
        ZRMetadata::ZRVarList list;
        text += "\nfill " + std::to_string(parser.FillVarList(list, {}, useBins).GetCode());
        for (int i = 0; i < static_cast<int>(list.Size()); ++i)
            text += "\n " + Describe(*list.GetVarAt(i), *list.GetEncoderAt(i));
    }
    const xercesc::DOMElement* root = parser.GetRootElement();
    for (const xercesc::DOMNode* child = root ? root->getFirstChild() : nullptr; child;
         child = child->getNextSibling()) {
        if (!IsModel(*child))
            continue;
        text += "\nmodel " + ZRXPrsUtil::ToUTF8(child->getNodeName());
        EXPECT_TRUE(parser.SetModelElmt(*static_cast<const xercesc::DOMElement*>(child)));
        ZRMetadata::ZRUniStats stats;
        const xercesc::DOMElement* position = nullptr;
        while (true) {
            const long code = parser.FillUniStats(stats, position).GetCode();
            if (!position)
                break;
            text += "\n " + std::to_string(code) + " " + stats.GetFieldName() + " " +
                    Num(stats.GetTotalFreq()) + " " + Join(stats.GetCutPoints(), Num) + " " +
                    Join(stats.GetFrequencies(), Num);
        }
    }
    return text;
}

// Every status and every variable as the list holds it (Describe, then
// label, role, storage and the calls on the encoder in order).
inline std::string Filled(long code, ZRMetadata::ZRVarList& list)
{
    std::string text = "\nfill " + std::to_string(code);
    for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
        const ZRMetadata::IZRVariable& var = *list.GetVarAt(i);
        text += "\n  " + Describe(var, *list.GetEncoderAt(i)) + "|" + var.GetLabel() + "|" +
                std::to_string(var.GetRole()) + "|" + std::to_string(var.GetValueFormat()) + "|" +
                Join(list.GetEncoderAt(i)->GetCallOrder(), Same);
    }
    return text;
}

// What the PMML reader (whole, binned, a wanted list) and the settings
// reader (as itself, with its derived fields, and through the PMML reader's
// FillVarList) give for a
// PMML text, or the DataModel reader for a DataModel text, with the fields of
// the dictionary in the DOM or read as the document streams.
inline std::string FieldsReading(const std::string& text, bool fieldsInDOM)
{
    std::string out;
    if (text.find("<DataModel") != std::string::npos) {
        ZRXPrsUtil::ZRDataModelParser reader;
        reader.SetFieldsInDOM(fieldsInDOM);
        out = "parse " + std::to_string(reader.ParseToDOM(text).GetCode());
        for (const bool alternate : {false, true}) {
            ZRMetadata::ZRVarList list;
            out += Filled(reader.FillVarList(list, alternate, true, 4).GetCode(), list);
        }
        return out;
    }
    ZRXPrsUtil::ZRSettingsParser reader;
    reader.SetFieldsInDOM(fieldsInDOM);
    reader.SetParametersRequired(false);
    std::istringstream in(text);
    out = "parse " + std::to_string(reader.ParseToDOM(in).GetCode());
    ZRXPrsUtil::ZRPMMLParser& pmml = reader;
    ZRMetadata::ZRVarList lists[6];
    out += Filled(pmml.FillVarList(lists[0], {}, false).GetCode(), lists[0]);
    out += Filled(reader.FillVarList(lists[1], false).GetCode(), lists[1]);
    out += Filled(reader.FillTransDict(lists[2]).GetCode(), lists[2]);
    out += Filled(pmml.FillVarList(lists[3], {}, true).GetCode(), lists[3]);
    out += Filled(reader.FillVarList(lists[4], true).GetCode(), lists[4]);
    out += Filled(pmml.FillVarList(lists[5], {"b", "a", "x"}, false).GetCode(), lists[5]);
    return out;
}

} // namespace pmmltest

#endif
