// ZRPMMLParser with parts of the document kept out of the DOM: the bodies of
// the models, or the fields of the dictionary, which are then read as the
// document streams. What is built, and that every reading is that of the
// whole document.
#include "PMMLTestSupport.h"
#include "ZRXDOMParser.h"
#include "ZRXTestDom.h"

#include <algorithm>
#include <cstring>

using pmmltest::BodiesReading;
using pmmltest::FieldsReading;
using pmmltest::IsModel;
using pmmltest::Parser;
using ZRMetadata::ZRVarList;

namespace {

// ZRPMMLParser with the bodies of the models left out: what is built, and that
// the variables and the statistics read are those of the whole document.
// A node and all below it as text: type, name, attributes in order, value.
std::string Dump(const xercesc::DOMNode& node)
{
    std::string text =
        std::to_string(node.getNodeType()) + ":" + ZRXPrsUtil::ToUTF8(node.getNodeName());
    if (const xercesc::DOMNamedNodeMap* attributes = node.getAttributes())
        for (XMLSize_t i = 0; i < attributes->getLength(); ++i)
            text += " " + ZRXPrsUtil::ToUTF8(attributes->item(i)->getNodeName()) + "=" +
                    ZRXPrsUtil::ToUTF8(attributes->item(i)->getNodeValue());
    if (node.getNodeValue())
        text += "'" + ZRXPrsUtil::ToUTF8(node.getNodeValue()) + "'";
    text += "[";
    for (const xercesc::DOMNode* child = node.getFirstChild(); child;
         child = child->getNextSibling())
        text += Dump(*child);
    return text + "]";
}

// A model with every kind of content, models inside and outside other
// elements, and entities that expand into kept and left-out parts.
const std::string kDocument =
    "<!DOCTYPE PMML [<!ENTITY stats '<ModelStats/>'><!ENTITY field '<MiningField name=\"a\"/>'>"
    "<!ENTITY node '<Node/>'>]>"
    "<PMML version='4.4'>\n"
    " <Header><Application name='t'/><!-- kept --></Header>\n"
    " <DataDictionary><DataField name='a' optype='continuous' dataType='double'/>"
    "<DataField name='b' optype='categorical' dataType='string'><Value value='x'/></DataField>"
    "</DataDictionary>\n"
    " <TransformationDictionary><DerivedField name='d'><Discretize field='a'>"
    "<DiscretizeBin binValue='1'><Interval closure='openOpen' rightMargin='1'/></DiscretizeBin>"
    "</Discretize></DerivedField></TransformationDictionary>\n"
    " <MiningModel functionName='regression' modelName='m'>\n"
    "  text <!-- comment --><?pi data?><![CDATA[cdata]]>&node;\n"
    "  <MiningSchema>&field;<MiningField name='b'/><!-- kept --></MiningSchema>\n"
    "  <Output><OutputField name='o'/></Output>\n"
    "  <ModelStats><UnivariateStats field='b'><Counts totalFreq='3'/><DiscrStats>"
    "<Array type='int'>1 2</Array></DiscrStats></UnivariateStats></ModelStats>\n"
    "  <ModelExplanation/><Targets><Target field='a'/></Targets>\n"
    "  <LocalTransformations><DerivedField name='l'/></LocalTransformations>\n"
    "  <Segmentation multipleModelMethod='sum'><Segment><True/><TreeModel>"
    "<ModelStats><UnivariateStats field='a'/></ModelStats><Node/></TreeModel></Segment>"
    "</Segmentation>\n"
    "  <Extension><Node/></Extension><pmml:Output/>\n"
    " </MiningModel>\n"
    " <RegressionModel/>\n"
    " <TreeModel>&stats;<Node><Node/></Node></TreeModel>\n"
    " <Extension><TreeModel><Node/></TreeModel>&node;</Extension>\n"
    " <pmml:TreeModel><Node/></pmml:TreeModel>\n"
    "</PMML>";

TEST(PMMLModelBodies, OnlyTheHeadOfEachModelIsBuilt)
{
    Parser whole;
    Parser skipped;
    EXPECT_TRUE(whole.GetReadModelBodies());
    skipped.SetReadModelBodies(false);
    EXPECT_FALSE(skipped.GetReadModelBodies());
    ASSERT_EQ(whole.Parse(kDocument), 0);
    ASSERT_EQ(skipped.Parse(kDocument), 0);

    const xercesc::DOMNode* full = whole.GetRootElement()->getFirstChild();
    const xercesc::DOMNode* part = skipped.GetRootElement()->getFirstChild();
    std::size_t models = 0;
    for (; full && part; full = full->getNextSibling(), part = part->getNextSibling()) {
        if (!IsModel(*full)) {
            EXPECT_EQ(Dump(*part), Dump(*full)); // outside the models: whole
            continue;
        }
        ++models;
        // The model's attributes, and of its children only the head ones, whole.
        std::string kept;
        for (const xercesc::DOMNode* child = full->getFirstChild(); child;
             child = child->getNextSibling())
            if (child->getNodeType() == xercesc::DOMNode::ELEMENT_NODE &&
                ZRXPrsUtil::IsPMMLModelHeadTag(child->getNodeName()))
                kept += Dump(*child);
        std::string fullText = Dump(*full);
        fullText = fullText.substr(0, fullText.find('['));
        EXPECT_EQ(Dump(*part), fullText + "[" + kept + "]");
    }
    EXPECT_EQ(full, nullptr);
    EXPECT_EQ(part, nullptr);
    EXPECT_EQ(models, 3u);
    // The Nodes left are those of the Extension and of the prefixed tag, which
    // is no model.
    EXPECT_EQ(skipped.Count(u"Node"), 3u);
    EXPECT_EQ(skipped.Count(u"TreeModel"), 2u);
    EXPECT_EQ(skipped.Count(u"UnivariateStats"), 1u);
    EXPECT_EQ(whole.Count(u"UnivariateStats"), 2u);
    EXPECT_EQ(BodiesReading(skipped), BodiesReading(whole));
}

// Both settings hold for every later parse until they are set back, and a
// parse that breaks off inside a skipped body or a recorded field leaves
// nothing behind for the next one. Only the bodies and the fields are left
// out of the DOM.
TEST(PMMLModelBodies, SettingsHoldForEveryLaterParse)
{
    const std::string text = pmmltest::Doc(
        "<DataField name='a' dataType='string' optype='categorical'><Value value='v'/>"
        "</DataField><Other/>",
        "<DataDictionary><DataField name='b' dataType='string' optype='x'/></DataDictionary>"
        "<TreeModel><Node/><ModelStats/></TreeModel>");
    Parser whole;
    Parser lean;
    EXPECT_TRUE(whole.GetFieldsInDOM() && whole.GetReadModelBodies());
    lean.SetFieldsInDOM(false);
    lean.SetReadModelBodies(false);
    EXPECT_FALSE(lean.GetFieldsInDOM() || lean.GetReadModelBodies());
    ASSERT_EQ(whole.Parse(text), 0);
    ZRVarList list;
    for (const char* broken : {"<PMML><DataDictionary/><TreeModel><Node><Node>",
                               "<PMML><DataDictionary><DataField name='a'/>"}) {
        ASSERT_EQ(lean.Parse(text), 0);
        EXPECT_EQ(whole.Count(u"*"), lean.Count(u"*") + 3); // DataField a, its Value, the Node
        EXPECT_EQ(lean.Count(u"DataField") + lean.Count(u"Other") + lean.Count(u"ModelStats"), 3u);
        EXPECT_EQ(lean.Parse(broken), 104);
        EXPECT_EQ(lean.FillVarList(list, {}, false).GetCode(), 104);
    }
    // Set back, the held records still serve; the next parse builds all.
    ASSERT_EQ(lean.Parse(text), 0);
    lean.SetFieldsInDOM(true);
    EXPECT_EQ(lean.FillVarList(list, {}, false).GetCode(), 0);
    EXPECT_EQ(list.Size(), 1u);
    // A body nested past the parser's limit is refused only when it is built.
    std::string deep;
    for (XMLSize_t i = 0; i < ZRXPrsUtil::ZRXDOMParser::kMaxDepth + 10; ++i)
        deep = "<Node>" + deep + "</Node>";
    const std::string deepModel = pmmltest::Doc("", "<TreeModel>" + deep + "</TreeModel>");
    EXPECT_EQ(lean.Parse(deepModel), 0);
    // Not the root PMML: nothing is left out (and the document is refused).
    EXPECT_EQ(lean.Parse("<X><TreeModel><Node/></TreeModel></X>"), 105);
    lean.SetReadModelBodies(true);
    EXPECT_EQ(lean.Parse(deepModel), 104);
    ASSERT_EQ(lean.Parse(text), 0);
    EXPECT_EQ(lean.Count(u"*"), whole.Count(u"*"));
}

TEST(PMMLModelBodies, GeneratedEnsembleReadsTheSame)
{
#ifndef ZRX_SMALL_ENSEMBLE
    GTEST_SKIP() << "no generated ensemble (Python 3 not found at configure time)";
#else
    Parser whole;
    Parser skipped;
    skipped.SetReadModelBodies(false);
    ASSERT_EQ(whole.ParseFile(ZRX_SMALL_ENSEMBLE), 0);
    ASSERT_EQ(skipped.ParseFile(ZRX_SMALL_ENSEMBLE), 0);
    // 41 fields and 40 statistics that all read, none of them from a body.
    const std::string reading = BodiesReading(whole);
    EXPECT_EQ(reading.substr(0, reading.find("\n x00")), "parse 0\nfill 0");
    EXPECT_EQ(BodiesReading(skipped), reading);
    std::size_t read = 0;
    for (std::size_t at = reading.find("\n 0 x"); at != std::string::npos;
         at = reading.find("\n 0 x", at + 1))
        ++read;
    EXPECT_EQ(read, 40u);
    EXPECT_EQ(skipped.Count(u"Node") + skipped.Count(u"Segment"), 0u);
#endif
}

// SetFieldsInDOM(false): the readers keep the fields of their dictionary out
// of the DOM and read them as the document streams, and give what they give
// on the whole document.
// "code/variables" of the first `count` fill calls of a reading: the PMML
// reader, the settings reader's FillVarList and FillTransDict; the DataModel
// reader with role 4, then 5.
std::string Fills(const std::string& reading, std::size_t count)
{
    std::string text;
    for (std::size_t at = reading.find("\nfill "); at != std::string::npos && count-- > 0;) {
        const std::size_t next = reading.find("\nfill ", at + 1);
        const std::string part = reading.substr(at + 6, next - at - 6);
        text += (text.empty() ? "" : " ") + std::to_string(std::stol(part)) + "/" +
                std::to_string(std::count(part.begin(), part.end(), '\n'));
        at = next;
    }
    return text;
}

// A faulty field between two good ones named "a" and "z", of its own kind.
std::string Between(const std::string& field)
{
    const std::string tag = field.substr(1, field.find(' ') - 1);
    const std::string kind = tag == "Field" ? "storage='real' measure='continuous'"
                                            : "dataType='double' optype='continuous'";
    const std::string text =
        "<" + tag + " name='a' " + kind + "/>" + field + "<" + tag + " name='z' " + kind + "/>";
    return tag == "Field" ? "<Fields>" + text + "</Fields>" : text;
}

// Faults inside and around the fields, with the fills they give.
struct Case {
    std::string text;
    const char* fills;
};
const Case kCases[] = {
    {"<DataField name='a' dataType='double' optype='continuous'/>"
     "<DataField dataType='double' optype='continuous'/><DataField name='c'/>",
     "108/1 108/1"},
    {"<DataField name='a' dataType='timeSeconds' optype='continuous'>"
     "<Value value='1' property='missing'/></DataField>",
     "0/1 109/0"},
    {"<DataField name='a' dataType='double' optype='categorical'><Interval leftMargin='5' "
     "rightMargin='1'/><Value value='2' displayValue='two'/></DataField>",
     "0/1 109/0"},
    {"<DataField name='b' dataType='integer' optype='ordinal'><Value value='1' "
     "displayValue='one'/><Value value='x' displayValue='bad'/><Value/><Value value='9' "
     "property='invalid' displayValue='nine'/><Extension name='invalidRangeLower' "
     "value='-3'/><Interval rightMargin='8'/></DataField>"
     "<DataField name='a' dataType='string' optype='continuous'><Value value='q' "
     "property='missing'/></DataField>",
     "0/2 0/2"},
    // Defaults and entities of a DTD, markup inside a field, and field tags
    // that are not fields of the dictionary.
    {"<!DOCTYPE PMML [<!ATTLIST DataField optype CDATA 'categorical'>"
     "<!ENTITY v \"<Value value='e' displayValue='E'/>\">"
     "<!ENTITY f \"<DataField name='x' dataType='string'>&v;</DataField>\">]>"
     "<DataField name='a' dataType='string'>&v;<!-- c --><?p i?><![CDATA[t]]><Value "
     "value='&amp;'/><Other><Value value='deep'/></Other></DataField>&f;"
     "<p:DataField name='p' dataType='string' optype='categorical'/>"
     "<Other><DataField name='o' dataType='string' optype='categorical'/></Other>",
     "0/2 0/2"},
    {"<DataField name='a' dataType='double' optype='continuous'><Value></DataField>",
     "104/0 104/0"},
    {"<Fields><Field name='w' storage='real' measure='continuous' role='freqWeight'/>"
     "<Field name='r' storage='integer' measure='continuous' role='input'><Range minValue='x' "
     "maxValue='10'/></Field><Field name='c' storage='string' measure='nominal' role='target'>"
     "<Values><Value value='a' displayLabel='A'/><Other/><Value value='b'/></Values>"
     "<Values><Value value='c' displayLabel='C'/></Values></Field>"
     "<Field name='u' storage='date' measure='ordinal' role='other'><Values><Value value='1' "
     "displayLabel='one'/></Values></Field><Field name='s' storage='bogus' measure='x'/></Fields>",
     "109/4 109/4"},
    {"<Fields><Field name='a' storage='real'/></Fields><Fields><Field name='b'/></Fields>",
     "108/0 108/0"},
    // Binned, a continuous field without a TransformationDictionary stops the walk.
    {"<DataField name='x' dataType='double' optype='continuous'/>", "0/1 0/1 0/0 110/0 110/0"},
    // Between good fields: the walk stops at the faulty one, nothing after it is read.
    {Between("<DataField dataType='double' optype='continuous'/>"), "108/1 108/1"},
    {Between("<DataField name='x' optype='continuous'/>"), "108/1 108/1"},
    {Between("<DataField name='x' dataType='double'/>"), "108/1 108/1"},
    {Between("<DataField name='x' dataType='timeSeconds' optype='continuous'/>"), "0/3 109/1"},
    {Between("<DataField name='x' dataType='dateDaysSince[1960]' optype='continuous'/>"),
     "0/3 109/1"},
    {Between("<DataField name='x' dataType='boolean' optype='categorical'/>"), "109/1 109/1"},
    {Between("<DataField name='x' dataType='Double' optype='continuous'/>"), "109/1 109/1"},
    {Between("<DataField name='a' dataType='integer' optype='categorical'/>"), "111/1 111/1"},
    {Between("<DataField name='x' dataType='double' optype='continuous'><Interval "
             "leftMargin='4' rightMargin='3'/></DataField>"),
     "0/3 109/1"},
    {Between("<DataField name='x' dataType='double' optype='continuous'><Interval "
             "leftMargin='abc'/></DataField>"),
     "0/3 109/1"},
    // Read, and refused, although a categorical field does not use it.
    {Between("<DataField name='x' dataType='integer' optype='categorical'><Interval "
             "leftMargin='x'/></DataField>"),
     "0/3 109/1"},
    {Between("<DerivedField name='x' dataType='timeSeconds' optype='continuous'/>"),
     "0/0 0/0 109/1"},
    {Between("<DerivedField name='x' dataType='double' optype='continuous'><Extension><Interval "
             "leftMargin='3' rightMargin='2'/></Extension></DerivedField>"),
     "0/0 0/0 109/1"},
    {Between("<Field storage='real' measure='continuous'/>"), "108/1 108/1"},
    {Between("<Field name='x' measure='continuous'/>"), "108/1 108/1"},
    {Between("<Field name='x' storage='real'/>"), "108/1 108/1"},
    {Between("<Field name='x' storage='Real' measure='continuous'/>"), "109/1 109/1"},
    {Between("<Field name='x' storage='bool'/>"), "109/1 109/1"},
    {Between("<Field name='a' storage='integer' measure='nominal'/>"), "111/1 111/1"},
};

std::string Document(const std::string& fields)
{
    if (fields.compare(0, 7, "<Fields") == 0)
        return "<DataModel>" + fields + "</DataModel>";
    if (fields.compare(0, 8, "<Derived") == 0)
        return pmmltest::Doc("",
                             "<TransformationDictionary>" + fields + "</TransformationDictionary>");
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
        EXPECT_EQ(Fills(whole, std::count(c.fills, c.fills + std::strlen(c.fills), ' ') + 1),
                  c.fills)
            << text;
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

// The documents of the tests and the bundled examples read the same in both
// ways (those of the corpus: PMMLCorpus), and the fills they give.
TEST(FieldsOutOfDOM, DocumentsReadAsWhole)
{
    const std::pair<std::string, const char*> documents[] = {
        {pmmltest::kDictionary, "0/12 109/3 0/7 110/11 109/3 0/0"},
        {ZRX_TEST_DATA_DIR "/settings/fields.xml", "0/12 0/12 0/10 110/5 110/5 0/0"},
        {ZRX_TEST_DATA_DIR "/datamodel/fields.xml", "0/8 0/8"},
        {ZRX_EXAMPLES_DIR "/data/job.settings.xml", "0/32 0/32 0/4 110/0 110/0 0/0"},
        {ZRX_EXAMPLES_DIR "/data/job.datamodel.xml", "0/15 0/15"},
    };
    for (const auto& [path, fills] : documents) {
        const std::string text = zrxtest::ReadFile(path);
        const std::string whole = FieldsReading(text, true);
        EXPECT_EQ(FieldsReading(text, false), whole) << path;
        EXPECT_EQ(Fills(whole, 6), fills) << path;
    }
}

} // namespace
