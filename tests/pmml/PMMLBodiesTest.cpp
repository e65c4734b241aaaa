// ZRPMMLParser with the bodies of the models left out: what is built, and that
// the variables and the statistics read are those of the whole document.
#include "PMMLTestSupport.h"
#include "ZRXDOMParser.h"

#include <gtest/gtest.h>

using pmmltest::BodiesReading;
using pmmltest::IsModel;
using pmmltest::Parser;

namespace {

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

long ParseFile(Parser& parser, const std::string& path, bool readBodies)
{
    parser.SetReadModelBodies(readBodies);
    return parser.ParseFile(path);
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

TEST(PMMLModelBodies, SettingHoldsForEveryLaterParse)
{
    Parser parser;
    parser.SetReadModelBodies(false);
    const std::string text = pmmltest::Doc("", "<TreeModel><Node/></TreeModel>");
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(parser.Parse(text), 0);
        EXPECT_EQ(parser.Count(u"Node"), 0u);
    }
    // A parse that breaks off inside a skipped body leaves nothing behind for
    // the next one.
    EXPECT_EQ(parser.Parse("<PMML><DataDictionary/><TreeModel><Node><Node>"), 104);
    ASSERT_EQ(
        parser.Parse(pmmltest::Doc("<DataField name='a' optype='continuous' dataType='double'/>",
                                   "<TreeModel><Node/><ModelStats/></TreeModel>")),
        0);
    EXPECT_EQ(parser.Count(u"Node"), 0u);
    EXPECT_EQ(parser.Count(u"ModelStats"), 1u);
    EXPECT_EQ(parser.Count(u"DataField"), 1u);
    // A body nested past the parser's limit is refused only when it is built.
    std::string deep;
    for (XMLSize_t i = 0; i < ZRXPrsUtil::ZRXDOMParser::kMaxDepth + 10; ++i)
        deep = "<Node>" + deep + "</Node>";
    const std::string deepModel = pmmltest::Doc("", "<TreeModel>" + deep + "</TreeModel>");
    EXPECT_EQ(parser.Parse(deepModel), 0);
    parser.SetReadModelBodies(true);
    EXPECT_EQ(parser.Parse(deepModel), 104);
    parser.SetReadModelBodies(false);
    // Not the root PMML: nothing is left out (and the document is refused).
    EXPECT_EQ(parser.Parse("<X><TreeModel><Node/></TreeModel></X>"), 105);
    parser.SetReadModelBodies(true);
    ASSERT_EQ(parser.Parse(text), 0);
    EXPECT_EQ(parser.Count(u"Node"), 1u);
}

TEST(PMMLModelBodies, GeneratedEnsembleReadsTheSame)
{
#ifndef ZRX_SMALL_ENSEMBLE
    GTEST_SKIP() << "no generated ensemble (Python 3 not found at configure time)";
#else
    Parser whole;
    Parser skipped;
    ASSERT_EQ(ParseFile(whole, ZRX_SMALL_ENSEMBLE, true), 0);
    ASSERT_EQ(ParseFile(skipped, ZRX_SMALL_ENSEMBLE, false), 0);
    const std::string reading = BodiesReading(whole);
    EXPECT_EQ(BodiesReading(skipped), reading);
    // 41 fields, and 40 statistics that all read.
    EXPECT_EQ(reading.substr(0, reading.find("\n x00")), "parse 0\nfill 0");
    EXPECT_NE(reading.find("\n y 1;"), std::string::npos);
    std::size_t read = 0;
    for (std::size_t at = reading.find("\n 0 x"); at != std::string::npos;
         at = reading.find("\n 0 x", at + 1))
        ++read;
    EXPECT_EQ(read, 40u);
    EXPECT_GT(whole.Count(u"Node"), 0u);
    EXPECT_EQ(skipped.Count(u"Node"), 0u);
    EXPECT_EQ(skipped.Count(u"Segment"), 0u);
#endif
}

} // namespace
