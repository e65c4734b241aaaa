// Many threads, one set of objects each: every reader, the combiner, the
// document reader and writer and the encoding conversions run side by side
// and give exactly what one thread gives.
#include "HostTestSupport.h"
#include "ZRXPlatform.h"

#include <zrparsexmlr/ExtNameStr.h>
#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRMem.h>
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRSettingsParser.h>
#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include <gtest/gtest.h>
#include <unicode/ucnv.h>
#include <xercesc/dom/DOMElement.hpp>

#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using ZRCommon::ZRStatus;
using ZRMTD_NAMESPACE::ZRVarList;

const std::string kExamples = ZRX_EXAMPLES_DIR "/data";
const std::string kData = ZRX_TEST_DATA_DIR;

void Names(const ZRVarList& vars, std::ostringstream& out)
{
    out << vars.Size() << ':';
    for (std::size_t i = 0; i < vars.Size(); ++i)
        out << vars.GetVarAt(static_cast<int>(i))->GetName() << ',';
    out << '\n';
}

void DataModel(std::ostringstream& out)
{
    ZRXPrsUtil::ZRDataModelParser parser;
    ZRVarList vars;
    out << "dm " << parser.ParseToDOM(zrxtest::ReadFile(kExamples + "/job.datamodel.xml")).GetCode()
        << ' ' << parser.FillVarList(vars, false, true, 10).GetCode() << ' ';
    Names(vars, out);
}

void PMML(std::ostringstream& out)
{
    ZRXPrsUtil::ZRPMMLParser reader;
    std::ifstream in(kData + "/pmml/dictionary.pmml", std::ios::binary);
    out << "pmml " << reader.ParseToDOM(in).GetCode() << ' ';
    ZRVarList vars;
    out << reader.FillVarList(vars, {}, false).GetCode() << ' ';
    Names(vars, out);
    const xercesc::DOMElement* root = reader.GetRootElement();
    const xercesc::DOMElement* model =
        root ? ZRXPrsUtil::GetFirstChildElmt(*root, "TreeModel") : nullptr;
    if (!model || !reader.SetModelElmt(*model)) {
        out << "no model\n";
        return;
    }
    ZRMTD_NAMESPACE::ZRUniStats stats;
    const xercesc::DOMElement* position = nullptr;
    do {
        const ZRStatus st = reader.FillUniStats(stats, position);
        out << st.GetCode();
        if (position && st.IsOK())
            out << '=' << stats.GetFieldName() << '/' << stats.GetTotalFreq();
        out << ';';
    } while (position);
    out << '\n';
}

void Settings(std::ostringstream& out)
{
    ZRXPrsUtil::ZRSettingsParser settings;
    std::ifstream in(kExamples + "/job.settings.xml", std::ios::binary);
    out << "settings " << settings.ParseToDOM(in).GetCode() << ' ';
    ZRVarList vars;
    out << settings.FillVarList(vars, false).GetCode() << ' '
        << settings.FillTransDict(vars).GetCode() << ' ';
    Names(vars, out);
    std::vector<std::string> targets;
    settings.GetTargetVars(targets);
    for (const std::string& t : targets)
        out << t << ',';
    int depth = 0;
    double alpha = 0.0;
    out << settings.GetParameter("maxTreeDepth", depth).GetCode() << '=' << depth << ' '
        << settings.GetParameter("alphaSplit", alpha).GetCode() << '=' << alpha << '\n';
}

void Combine(const std::string& outPath, std::ostringstream& out)
{
    ZRVarList splitVars;
    const std::vector<std::string> regions = {"E", "N", "S", "W"};
    splitVars.AddCatVar("region", "Sales region", regions,
                        ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(splitVars);
    out << "combine ";
    for (const std::string& region : regions)
        out << combiner.AddModel(kExamples + "/split/churn_" + region + ".pmml", {region})
                   .GetCode();
    out << ' ' << combiner.ExportMiningModel(outPath).GetCode() << '\n'
        << zrxtest::ReadFile(outPath) << '\n';
}

void ReadWrite(const std::string& outPath, std::ostringstream& out)
{
    ZRXPrsUtil::ZRXMLReadWrite io;
    out << "rw " << io.ParseToDOM(kExamples + "/job.datamodel.xml").GetCode() << ' '
        << io.WriteFromDOM(outPath).GetCode() << '\n'
        << zrxtest::ReadFile(outPath) << '\n';
}

void Conversions(std::ostringstream& out)
{
    const std::string text = "caf\xC3\xA9 \xE4\xB8\xAD \xE2\x82\xAC";
    void* own = ZRMem::VORKMBConverterNew_C("1252");
    std::string page;
    std::string back;
    out << "conv " << ZRMem::VORKMBU8ToCodePage(own, page, text) << ' '
        << ZRMem::VORKMBCodePageToU8(own, back, page) << ' ' << back << ' ';
    ucnv_close(static_cast<UConverter*>(own));
    out << ZRMem::VORKMBU8ToCodePage(nullptr, page, text) << ' '
        << ZRMem::VORKMBCodePageToU8(nullptr, back, page) << ' ' << back << ' ';
    ZRMem::U16String units;
    out << ZRMem::VORKMBU8ToU16(units, text) << ' ' << units.size() << ' '
        << ZRMem::VORKMBU16ToU8(back, units) << ' ' << back << ' ';
    ZRMem::ExtNameStr name;
    name.SetU8(text);
    out << name.GetU16().size() << '\n';
}

// Objects made and destroyed in quick succession: each one starts and ends
// its share of the XML library while other threads parse.
void Lifetimes(std::ostringstream& out)
{
    const std::string pmml = "<PMML version=\"4.4\"><DataDictionary>"
                             "<DataField name=\"x\" optype=\"continuous\" dataType=\"double\"/>"
                             "</DataDictionary></PMML>";
    int ok = 0;
    for (int i = 0; i < 40; ++i) {
        ZRXPrsUtil::ZRPMMLParser reader;
        std::istringstream in(pmml);
        ZRVarList vars;
        if (reader.ParseToDOM(in).IsOK() && reader.FillVarList(vars, {}, false).IsOK())
            ok += static_cast<int>(vars.Size());
    }
    out << "lifetimes " << ok << '\n';
}

std::string Everything(const zrxhost::TempDir& dir, int thread, int round)
{
    const std::string tag = std::to_string(thread) + "_" + std::to_string(round);
    std::ostringstream out;
    Lifetimes(out);
    DataModel(out);
    PMML(out);
    Settings(out);
    Combine(dir.File("combined_" + tag + ".pmml"), out);
    ReadWrite(dir.File("written_" + tag + ".xml"), out);
    Conversions(out);
    return out.str();
}

TEST(Threads, EightThreadsWithObjectsOfTheirOwnGiveWhatOneThreadGives)
{
    zrxhost::TempDir dir("threads");
    const std::string expected = Everything(dir, 0, 0);
    ASSERT_NE(std::string::npos, expected.find("combine 0000 0"));
    ASSERT_NE(std::string::npos, expected.find("rw 0 0"));

    const int kThreads = 8;
    const int kRounds = 8;
    std::vector<std::vector<std::string>> results(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&dir, &results, t] {
            for (int round = 0; round < kRounds; ++round)
                results[t].push_back(Everything(dir, t + 1, round));
        });
    for (std::thread& thread : threads)
        thread.join();
    // Every object gave its share of the XML library back.
    EXPECT_EQ(0, ZRXPrsUtil::ZRXPlatform::Shares());

    for (int t = 0; t < kThreads; ++t) {
        ASSERT_EQ(static_cast<std::size_t>(kRounds), results[t].size());
        for (int round = 0; round < kRounds; ++round)
            EXPECT_EQ(expected, results[t][round]) << "thread " << t << " round " << round;
    }
}

} // namespace
