// SetFieldsInDOM(false): the readers keep the fields of their dictionary out
// of the DOM and read them as the document streams, and give what they give
// on the whole document.
#include "PMMLTestSupport.h"
#include "ZRXTestDom.h"

#include <gtest/gtest.h>

using pmmltest::FieldsReading;
using ZRMetadata::ZRVarList;

namespace {

// The codes of the FillVarList calls of a reading, in order.
std::vector<long> Codes(const std::string& reading)
{
    std::vector<long> codes;
    for (std::size_t at = reading.find("\nfill "); at != std::string::npos;
         at = reading.find("\nfill ", at + 1))
        codes.push_back(std::stol(reading.substr(at + 6)));
    return codes;
}

// Faults inside and around the fields, with the codes of the first two
// FillVarList calls of the reading: PMML, then settings; the DataModel reader
// with role 4, then 5.
struct Case {
    const char* text;
    long pmml;
    long settings;
};
const Case kCases[] = {
    {"<DataField name='a' dataType='double' optype='continuous'/>"
     "<DataField dataType='double' optype='continuous'/><DataField name='c'/>",
     108, 108},
    {"<DataField name='a' dataType='timeSeconds' optype='continuous'>"
     "<Value value='1' property='missing'/></DataField>",
     0, 109},
    {"<DataField name='a' dataType='double' optype='categorical'><Interval leftMargin='5' "
     "rightMargin='1'/><Value value='2' displayValue='two'/></DataField>",
     0, 109},
    {"<DataField name='b' dataType='integer' optype='ordinal'><Value value='1' "
     "displayValue='one'/><Value value='x' displayValue='bad'/><Value/><Value value='9' "
     "property='invalid' displayValue='nine'/><Extension name='invalidRangeLower' "
     "value='-3'/><Interval rightMargin='8'/></DataField>"
     "<DataField name='a' dataType='string' optype='continuous'><Value value='q' "
     "property='missing'/></DataField>",
     0, 0},
    // Defaults and entities of a DTD, markup inside a field, and field tags
    // that are not fields of the dictionary.
    {"<!DOCTYPE PMML [<!ATTLIST DataField optype CDATA 'categorical'>"
     "<!ENTITY v \"<Value value='e' displayValue='E'/>\">"
     "<!ENTITY f \"<DataField name='x' dataType='string'>&v;</DataField>\">]>"
     "<DataField name='a' dataType='string'>&v;<!-- c --><?p i?><![CDATA[t]]><Value "
     "value='&amp;'/><Other><Value value='deep'/></Other></DataField>&f;"
     "<p:DataField name='p' dataType='string' optype='categorical'/>"
     "<Other><DataField name='o' dataType='string' optype='categorical'/></Other>",
     0, 0},
    {"<DataField name='a' dataType='double' optype='continuous'><Value></DataField>", 104, 104},
    {"<Fields><Field name='w' storage='real' measure='continuous' role='freqWeight'/>"
     "<Field name='r' storage='integer' measure='continuous' role='input'><Range minValue='x' "
     "maxValue='10'/></Field><Field name='c' storage='string' measure='nominal' role='target'>"
     "<Values><Value value='a' displayLabel='A'/><Other/><Value value='b'/></Values>"
     "<Values><Value value='c' displayLabel='C'/></Values></Field>"
     "<Field name='u' storage='date' measure='ordinal' role='other'><Values><Value value='1' "
     "displayLabel='one'/></Values></Field><Field name='s' storage='bogus' measure='x'/></Fields>",
     109, 109},
    {"<Fields><Field name='a' storage='real'/></Fields><Fields><Field name='b'/></Fields>", 108,
     108},
};

std::string Document(const std::string& fields)
{
    if (fields.compare(0, 7, "<Fields") == 0)
        return "<DataModel>" + fields + "</DataModel>";
    const std::size_t dictionary = fields.find("]>");
    const std::size_t at = dictionary == std::string::npos ? 0 : dictionary + 2;
    return fields.substr(0, at) + pmmltest::Doc(fields.substr(at),
                                                "<DataDictionary><DataField name='second' "
                                                "dataType='string' optype='categorical'/>"
                                                "</DataDictionary>");
}

TEST(FieldsOutOfDOM, FaultsReadAsInTheWholeDocument)
{
    for (const Case& c : kCases) {
        const std::string text = Document(c.text);
        const std::string whole = FieldsReading(text, true);
        EXPECT_EQ(FieldsReading(text, false), whole) << text;
        if (c.pmml == 104) {
            EXPECT_EQ(whole.substr(0, 9), "parse 104") << text;
            continue;
        }
        const std::vector<long> codes = Codes(whole);
        EXPECT_EQ(codes.at(0), c.pmml) << text;
        EXPECT_EQ(codes.at(1), c.settings) << text;
    }
    // Deeper than the nesting limit inside a field: refused in both ways.
    std::string deep = "<Value/>";
    for (XMLSize_t i = 0; i < ZRXPrsUtil::ZRXDOMParser::kMaxDepth; ++i)
        deep = "<N>" + deep + "</N>";
    const std::string text =
        Document("<DataField name='a' dataType='string' optype='x'>" + deep + "</DataField>");
    EXPECT_EQ(FieldsReading(text, false).substr(0, 9), "parse 104");
    EXPECT_EQ(FieldsReading(text, true).substr(0, 9), "parse 104");
}

// The documents of the tests read the same in both ways (those of the corpus:
// PMMLCorpus).
TEST(FieldsOutOfDOM, DocumentsReadAsWhole)
{
    for (const char* path :
         {pmmltest::kDictionary.c_str(), ZRX_TEST_DATA_DIR "/settings/fields.xml",
          ZRX_TEST_DATA_DIR "/datamodel/fields.xml", ZRX_EXAMPLES_DIR "/data/job.settings.xml",
          ZRX_EXAMPLES_DIR "/data/job.datamodel.xml"}) {
        const std::string text = zrxtest::ReadFile(path);
        EXPECT_EQ(FieldsReading(text, false), FieldsReading(text, true)) << path;
    }
}

// Only the fields are left out of the DOM, and their records go with the
// next parse.
TEST(FieldsOutOfDOM, TheDOMLacksTheFieldsAlone)
{
    const std::string text = pmmltest::Doc(
        "<DataField name='a' dataType='string' optype='categorical'><Value value='v'/>"
        "</DataField><Other/>",
        "<DataDictionary><DataField name='b' dataType='string' optype='x'/></DataDictionary>");
    pmmltest::Parser whole;
    pmmltest::Parser lean;
    lean.SetFieldsInDOM(false);
    EXPECT_TRUE(whole.GetFieldsInDOM());
    EXPECT_FALSE(lean.GetFieldsInDOM());
    ASSERT_EQ(whole.Parse(text), 0);
    ASSERT_EQ(lean.Parse(text), 0);
    EXPECT_EQ(whole.Count(u"*"), lean.Count(u"*") + 2);
    EXPECT_EQ(lean.Count(u"DataField"), 1u);
    EXPECT_EQ(lean.Count(u"Other"), 1u);
    // Set back, the next parse builds them; a failed parse leaves no records.
    lean.SetFieldsInDOM(true);
    ZRVarList list;
    EXPECT_EQ(lean.FillVarList(list, {}, false).GetCode(), 0);
    EXPECT_EQ(list.Size(), 1u);
    lean.SetFieldsInDOM(false);
    EXPECT_EQ(lean.Parse("<PMML><DataDictionary><DataField name='a'/>"), 104);
    EXPECT_EQ(lean.FillVarList(list, {}, false).GetCode(), 104);
    lean.SetFieldsInDOM(true);
    ASSERT_EQ(lean.Parse(text), 0);
    EXPECT_EQ(lean.Count(u"DataField"), 2u);
}

} // namespace
