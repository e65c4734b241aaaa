// Self-contained output: entity references of a document's internal DTD are
// read as their text, so what is copied out of it needs no DTD.
#include "ZRXTestDom.h"

#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include <gtest/gtest.h>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include <fstream>
#include <string>
#include <vector>

namespace {

using ZRMTD_NAMESPACE::ZRVarList;

std::string Model(const std::string& region)
{
    return "<?xml version=\"1.0\"?>\n"
           "<!DOCTYPE PMML [<!ENTITY maker \"Acme\"><!ENTITY line \"&maker; line\">]>\n"
           "<PMML version=\"4.4\"><Header copyright=\"&maker;\"><Annotation>Made by &line; " +
           region +
           "</Annotation></Header>"
           "<DataDictionary numberOfFields=\"1\"><DataField name=\"kind\" optype=\"categorical\" "
           "dataType=\"string\"><Value value=\"&maker;\"/></DataField></DataDictionary>"
           "<TreeModel functionName=\"classification\"><MiningSchema>"
           "<MiningField name=\"kind\"/></MiningSchema>"
           "<Node score=\"&maker;\"><True/><Extension name=\"n\">&maker; tree</Extension></Node>"
           "</TreeModel></PMML>";
}

int EntityReferences(const xercesc::DOMNode* node)
{
    int count = 0;
    for (; node; node = node->getNextSibling()) {
        if (node->getNodeType() == xercesc::DOMNode::ENTITY_REFERENCE_NODE)
            ++count;
        count += EntityReferences(node->getFirstChild());
    }
    return count;
}

TEST(Entities, ACombinedModelCarriesTheTextOfItsEntitiesAndReadsBack)
{
    zrxtest::TempDir dir("entities");
    ZRVarList splitVars;
    splitVars.AddCatVar("region", "Region", std::vector<std::string>{"N", "S"},
                        ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(splitVars);
    ASSERT_EQ(0, combiner.AddModel(dir.Write("n.pmml", Model("N")), {"N"}).GetCode());
    ASSERT_EQ(0, combiner.AddModel(dir.Write("s.pmml", Model("S")), {"S"}).GetCode());
    const std::string output = dir.File("combined.pmml");
    ASSERT_EQ(0, combiner.ExportMiningModel(output).GetCode());

    const std::string text = zrxtest::ReadFile(output);
    EXPECT_EQ(std::string::npos, text.find('&')) << text;
    EXPECT_NE(std::string::npos, text.find("Made by Acme line N")) << text;
    EXPECT_NE(std::string::npos, text.find("Acme tree")) << text;
    EXPECT_NE(std::string::npos, text.find("score=\"Acme\"")) << text;

    // The document reader keeps no entity reference node of an input either.
    ZRXPrsUtil::ZRXMLReadWrite io;
    ASSERT_EQ(0, io.ParseToDOM(dir.File("n.pmml")).GetCode());
    EXPECT_EQ(0, EntityReferences(io.GetDocument()->getDocumentElement()));
    ASSERT_EQ(0, io.ParseToDOM(output).GetCode()) << io.GetXercesMessage();
    std::ifstream in(output, std::ios::binary);
    ZRXPrsUtil::ZRPMMLParser reader;
    ASSERT_EQ(0, reader.ParseToDOM(in).GetCode()) << reader.GetXercesMessage();
    ZRVarList vars;
    ASSERT_EQ(0, reader.FillVarList(vars, {}, false).GetCode());
    ASSERT_EQ(2u, vars.Size());
    EXPECT_EQ("Acme", vars.GetVarAt(0)->GetEncoder()->GetValueText(0));
}

} // namespace
