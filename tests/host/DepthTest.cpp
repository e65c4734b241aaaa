// Deep documents: every operation works at the nesting limit on a thread
// with a 1 MiB stack, and every parse refuses one level more with 104.
#include "ZRXTestDom.h"
#include "ZRXDOMParser.h"

#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRSettingsParser.h>
#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include <gtest/gtest.h>
#include <xercesc/dom/DOMElement.hpp>

#include <pthread.h>

#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace {

using ZRMTD_NAMESPACE::ZRVarList;

// The document element is level 1.
inline std::string Nest(const std::string& open, const std::string& close, int levels,
                        const std::string& inner = std::string())
{
    std::string text;
    for (int i = 0; i < levels; ++i)
        text += open;
    text += inner;
    for (int i = 0; i < levels; ++i)
        text += close;
    return text;
}

// A PMML TreeModel whose deepest Node is at level `depth` (PMML 1,
// TreeModel 2, nested Nodes 3 to depth), with one field and its statistics.
inline std::string DeepPMML(int depth)
{
    return "<PMML version=\"4.4\"><Header copyright=\"c\"/>"
           "<DataDictionary numberOfFields=\"1\">"
           "<DataField name=\"x\" optype=\"continuous\" dataType=\"double\"/>"
           "</DataDictionary>"
           "<TreeModel functionName=\"regression\"><MiningSchema><MiningField name=\"x\"/>"
           "</MiningSchema><ModelStats><UnivariateStats field=\"x\"><Counts totalFreq=\"3\"/>"
           "<NumericInfo minimum=\"0\" maximum=\"1\" mean=\"0.5\"/>"
           "<ContStats><Interval closure=\"closedOpen\" leftMargin=\"0\" rightMargin=\"1\"/>"
           "<Array type=\"real\">3</Array></ContStats></UnivariateStats></ModelStats>" +
           Nest("<Node score=\"1\">", "</Node>", depth - 2) + "</TreeModel></PMML>";
}

// A settings document whose innermost Parameter is at level `depth`: PMML 1,
// MiningBuildTask 2, Extension 3, Parameters 4, ComplexParameter "g" 5 to
// depth - 1.
inline std::string DeepSettings(int depth)
{
    return "<PMML version=\"4.4\"><DataDictionary numberOfFields=\"1\">"
           "<DataField name=\"x\" optype=\"continuous\" dataType=\"double\"/></DataDictionary>"
           "<MiningBuildTask><Extension name=\"settings\"><Parameters>"
           "<Parameter name=\"top\" type=\"int\" value=\"7\"/>" +
           Nest("<ComplexParameter name=\"g\">", "</ComplexParameter>", depth - 5,
                "<Parameter name=\"leaf\" type=\"int\" value=\"5\"/>") +
           "</Parameters></Extension></MiningBuildTask></PMML>";
}

// A DataModel whose deepest element is at level `depth`: DataModel 1,
// Fields 2, Field 3, nested Range elements 4 to depth.
inline std::string DeepDataModel(int depth)
{
    return "<DataModel><Fields>"
           "<Field name=\"f\" storage=\"integer\" measure=\"continuous\">" +
           Nest("<Range minValue=\"0\" maxValue=\"1\">", "</Range>", depth - 3) +
           "</Field></Fields></DataModel>";
}

// Runs `work` on a new thread with a stack of `bytes` and waits for it. False
// if the thread can't be made.
inline bool RunWithStack(const std::function<void()>& work, std::size_t bytes)
{
#if defined(__SANITIZE_THREAD__)
    // ThreadSanitizer keeps its state of each thread (some 800 KB) in static
    // TLS, which glibc carves from the top of the thread's stack: it is added
    // so that the code under test still gets `bytes`.
    bytes += std::size_t(1) << 20;
#endif
    pthread_attr_t attr;
    if (pthread_attr_init(&attr) != 0)
        return false;
    pthread_attr_setstacksize(&attr, bytes);
    auto call = [](void* arg) -> void* {
        (*static_cast<const std::function<void()>*>(arg))();
        return nullptr;
    };
    pthread_t thread;
    const int made =
        pthread_create(&thread, &attr, call, const_cast<std::function<void()>*>(&work));
    pthread_attr_destroy(&attr);
    if (made != 0)
        return false;
    return pthread_join(thread, nullptr) == 0;
}

const int kLimit = static_cast<int>(ZRXPrsUtil::ZRXDOMParser::kMaxDepth);
const std::size_t kStack = 1u << 20;

std::size_t Count(const std::string& text, const std::string& what)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++count;
    return count;
}

// Every operation at the limit and one level past it, on a thread with a
// 1 MiB stack (a stack overflow ends the test program): what each gave, as
// text "parse/query/query...".
class Depth : public ::testing::TestWithParam<int> {};

TEST_P(Depth, EveryReaderTheCombinerAndTheDocumentWriter)
{
    const int levels = kLimit + GetParam();
    zrxtest::TempDir dir("depth");
    const std::string model = dir.Write("model.pmml", DeepPMML(levels));
    const std::string settingsText = DeepSettings(levels);
    const std::string dataModelText = DeepDataModel(levels);
    std::ostringstream out;
    ASSERT_TRUE(RunWithStack(
        [&] {
            ZRXPrsUtil::ZRPMMLParser reader;
            std::ifstream in(model, std::ios::binary);
            ZRVarList vars;
            out << reader.ParseToDOM(in).GetCode() << '/'
                << reader.FillVarList(vars, {}, false).GetCode() << '/' << vars.Size();
            const xercesc::DOMElement* root = reader.GetRootElement();
            if (root && reader.SetModelElmt(*ZRXPrsUtil::GetFirstChildElmt(*root, "TreeModel"))) {
                ZRMTD_NAMESPACE::ZRUniStats stats;
                const xercesc::DOMElement* position = nullptr;
                out << '/' << reader.FillUniStats(stats, position).GetCode() << '/'
                    << stats.GetFieldName();
            }
            ZRXPrsUtil::ZRSettingsParser settings;
            std::istringstream settingsIn(settingsText);
            ZRVarList settingsVars;
            out << " settings " << settings.ParseToDOM(settingsIn).GetCode() << '/'
                << settings.FillVarList(settingsVars, false).GetCode();
            void* group = nullptr;
            for (int i = 0; i < levels - 5; ++i)
                group = settings.GetComplexParameter("g", group);
            int leaf = 0;
            out << '/' << settings.GetParameter("leaf", leaf, group).GetCode() << '/' << leaf;
            ZRXPrsUtil::ZRDataModelParser parser;
            ZRVarList dmVars;
            out << " dm " << parser.ParseToDOM(dataModelText).GetCode() << '/'
                << parser.FillVarList(dmVars, false, false, 10).GetCode() << '/' << dmVars.Size();
            ZRVarList splitVars;
            splitVars.AddCatVar("region", "Region", std::vector<std::string>{"N"},
                                ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
            ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(splitVars);
            out << " combine " << combiner.AddModel(model, {"N"}).GetCode() << '/'
                << combiner.ExportMiningModel(dir.File("combined.pmml")).GetCode();
            ZRXPrsUtil::ZRXMLReadWrite io;
            out << " rw " << io.ParseToDOM(model).GetCode() << '/'
                << io.WriteFromDOM(dir.File("out.xml")).GetCode() << '/'
                << (io.GetDocument() != nullptr);
        },
        kStack));
    if (GetParam() > 0) {
        // The export answers with the refusal of its model.
        EXPECT_EQ("104/104/0 settings 104/104/104/0 dm 104/104/0 combine 104/104 rw 104/0/0",
                  out.str());
        return;
    }
    EXPECT_EQ("0/0/1/0/x settings 0/0/0/5 dm 0/0/1 combine 0/0 rw 0/0/1", out.str());
    // The model sits 3 levels deeper in the combined one, inside its Segment.
    const std::string combined = zrxtest::ReadFile(dir.File("combined.pmml"));
    EXPECT_EQ(std::size_t(levels - 2), Count(combined, "<Node "));
    EXPECT_NE(std::string::npos, combined.find("</Segmentation></MiningModel></PMML>"));
    EXPECT_EQ(std::size_t(levels - 2), Count(zrxtest::ReadFile(dir.File("out.xml")), "<Node "));
}

INSTANTIATE_TEST_SUITE_P(AtAndPastTheLimit, Depth, ::testing::Values(0, 1),
                         [](const ::testing::TestParamInfo<int>& param) {
                             return std::string(param.param == 0 ? "AtTheLimit" : "OneLevelPast");
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
    std::istringstream deep(Nest("<e>", "</e>", kLimit + 1));
    EXPECT_EQ(104, io.ParseToDOM(deep).GetCode());
    EXPECT_NE(std::string::npos, io.GetXercesMessage().find("nested deeper than"));
    std::istringstream again(text);
    EXPECT_EQ(0, io.ParseToDOM(again).GetCode());
}

} // namespace
