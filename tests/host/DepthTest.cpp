// Deep documents: every operation works at the nesting limit on a thread
// with a 1 MiB stack, and every parse refuses one level more with 104.
#include "HostTestSupport.h"
#include "ZRXDOMParser.h"

#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRSettingsParser.h>
#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include <gtest/gtest.h>
#include <xercesc/dom/DOMElement.hpp>

#include <sstream>
#include <string>
#include <vector>

namespace {

using ZRMTD_NAMESPACE::ZRVarList;

const int kLimit = static_cast<int>(ZRXPrsUtil::ZRXDOMParser::kMaxDepth);
const std::size_t kStack = 1u << 20;

std::size_t Count(const std::string& text, const std::string& what)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++count;
    return count;
}

// What each operation gave, as text: "parse/query/query...".
class Depth : public ::testing::TestWithParam<int> {
protected:
    // Runs `work` on a 1 MiB thread; a stack overflow ends the test program.
    std::string OnSmallStack(const std::function<std::string()>& work)
    {
        std::string result;
        EXPECT_TRUE(zrxhost::RunWithStack([&] { result = work(); }, kStack));
        return result;
    }
    int Levels() const { return kLimit + GetParam(); }
    bool Past() const { return GetParam() > 0; }
};

TEST_P(Depth, PMMLReader)
{
    const std::string text = zrxhost::DeepPMML(Levels());
    const std::string got = OnSmallStack([&] {
        ZRXPrsUtil::ZRPMMLParser reader;
        std::istringstream in(text);
        std::ostringstream out;
        out << reader.ParseToDOM(in).GetCode();
        ZRVarList vars;
        out << '/' << reader.FillVarList(vars, {}, false).GetCode() << '/' << vars.Size();
        const xercesc::DOMElement* root = reader.GetRootElement();
        if (root && reader.SetModelElmt(*ZRXPrsUtil::GetFirstChildElmt(*root, "TreeModel"))) {
            ZRMTD_NAMESPACE::ZRUniStats stats;
            const xercesc::DOMElement* position = nullptr;
            out << '/' << reader.FillUniStats(stats, position).GetCode() << '/'
                << stats.GetFieldName();
        }
        return out.str();
    });
    EXPECT_EQ(Past() ? "104/104/0" : "0/0/1/0/x", got);
}

TEST_P(Depth, SettingsReader)
{
    const std::string text = zrxhost::DeepSettings(Levels());
    const int groups = Levels() - 5;
    const std::string got = OnSmallStack([&] {
        ZRXPrsUtil::ZRSettingsParser settings;
        std::istringstream in(text);
        std::ostringstream out;
        out << settings.ParseToDOM(in).GetCode();
        ZRVarList vars;
        out << '/' << settings.FillVarList(vars, false).GetCode();
        void* group = nullptr;
        for (int i = 0; i < groups; ++i)
            group = settings.GetComplexParameter("g", group);
        int leaf = 0;
        out << '/' << settings.GetParameter("leaf", leaf, group).GetCode() << '/' << leaf;
        return out.str();
    });
    EXPECT_EQ(Past() ? "104/104/104/0" : "0/0/0/5", got);
}

TEST_P(Depth, DataModelReader)
{
    const std::string text = zrxhost::DeepDataModel(Levels());
    const std::string got = OnSmallStack([&] {
        ZRXPrsUtil::ZRDataModelParser parser;
        std::ostringstream out;
        out << parser.ParseToDOM(text).GetCode();
        ZRVarList vars;
        out << '/' << parser.FillVarList(vars, false, false, 10).GetCode() << '/' << vars.Size();
        return out.str();
    });
    EXPECT_EQ(Past() ? "104/104/0" : "0/0/1", got);
}

TEST_P(Depth, CombinerAddsAndExports)
{
    zrxhost::TempDir dir("depth_combiner");
    const std::string model = dir.Write("model.pmml", zrxhost::DeepPMML(Levels()));
    const std::string output = dir.File("combined.pmml");
    const std::string got = OnSmallStack([&] {
        ZRVarList splitVars;
        splitVars.AddCatVar("region", "Region", std::vector<std::string>{"N"},
                            ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
        ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(splitVars);
        std::ostringstream out;
        out << combiner.AddModel(model, {"N"}).GetCode() << '/'
            << combiner.ExportMiningModel(output).GetCode();
        return out.str();
    });
    if (Past()) {
        EXPECT_EQ("104/104", got); // the export answers with the refusal
        return;
    }
    EXPECT_EQ("0/0", got);
    // The model sits 3 levels deeper in the output, inside its Segment.
    const std::string written = zrxtest::ReadFile(output);
    EXPECT_EQ(static_cast<std::size_t>(Levels() - 2), Count(written, "<Node "));
    EXPECT_NE(std::string::npos, written.find("</Segmentation></MiningModel></PMML>"));
}

TEST_P(Depth, DocumentReaderAndWriter)
{
    zrxhost::TempDir dir("depth_readwrite");
    const std::string input = dir.Write("in.xml", zrxhost::DeepPMML(Levels()));
    const std::string output = dir.File("out.xml");
    const std::string got = OnSmallStack([&] {
        ZRXPrsUtil::ZRXMLReadWrite io;
        std::ostringstream out;
        out << io.ParseToDOM(input).GetCode() << '/' << io.WriteFromDOM(output).GetCode() << '/'
            << (io.GetDocument() != nullptr);
        return out.str();
    });
    if (Past()) {
        EXPECT_EQ("104/0/0", got);
        return;
    }
    EXPECT_EQ("0/0/1", got);
    EXPECT_EQ(static_cast<std::size_t>(Levels() - 2), Count(zrxtest::ReadFile(output), "<Node "));
}

INSTANTIATE_TEST_SUITE_P(AtAndPastTheLimit, Depth, ::testing::Values(0, 1),
                         [](const ::testing::TestParamInfo<int>& param) {
                             return param.param == 0 ? std::string("AtTheLimit")
                                                     : std::string("OneLevelPast");
                         });

// The limit counts nesting, not elements: any number of siblings, empty or
// not, at every level of a document at the limit.
TEST(DepthCount, SiblingsAndEmptyElementsDoNotAddUp)
{
    std::string text;
    for (int level = 1; level < kLimit; ++level)
        text += "<e><empty/><full>t</full><empty a=\"1\"/>";
    text += "<last/>";
    for (int i = 0; i < 3 * kLimit; ++i)
        text += "<sibling/>";
    for (int level = 1; level < kLimit; ++level)
        text += "</e>";
    std::istringstream in(text);
    ZRXPrsUtil::ZRXMLReadWrite io;
    EXPECT_EQ(0, io.ParseToDOM(in).GetCode()) << io.GetXercesMessage();

    // The count starts again at every parse, also after a refused one.
    std::istringstream deep(zrxhost::Nest("<e>", "</e>", kLimit + 1));
    EXPECT_EQ(104, io.ParseToDOM(deep).GetCode());
    EXPECT_NE(std::string::npos, io.GetXercesMessage().find("nested deeper than"));
    std::istringstream again(text);
    EXPECT_EQ(0, io.ParseToDOM(again).GetCode());
}

} // namespace
