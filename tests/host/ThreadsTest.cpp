// Many threads, one set of objects each: every reader, the combiner, the
// document reader and writer and the encoding conversions run side by side
// and give exactly what one thread gives.
#include "ZRXTestDom.h"
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

using ZRMTD_NAMESPACE::ZRVarList;

const std::string kExamples = ZRX_EXAMPLES_DIR "/data";

std::ostream& operator<<(std::ostream& out, const ZRVarList& vars)
{
    out << vars.Size() << ':';
    for (std::size_t i = 0; i < vars.Size(); ++i)
        out << vars.GetVarAt(static_cast<int>(i))->GetName() << ',';
    return out << '\n';
}

// Every reader's fields and answers, a combined model and a written document
// (read back), and the encoding conversions, as text.
std::string Everything(const zrxtest::TempDir& dir, const std::string& tag)
{
    std::ostringstream out;
    // Objects made and destroyed in quick succession: each one starts and
    // ends its share of the XML library while other threads parse.
    for (int i = 0; i < 40; ++i) {
        ZRXPrsUtil::ZRPMMLParser reader;
        std::istringstream in(
            "<PMML version=\"4.4\"><DataDictionary><DataField name=\"x\" "
            "optype=\"continuous\" dataType=\"double\"/></DataDictionary></PMML>");
        ZRVarList vars;
        out << reader.ParseToDOM(in).GetCode() << reader.FillVarList(vars, {}, false).GetCode()
            << vars.Size();
    }
    ZRXPrsUtil::ZRDataModelParser dataModel;
    ZRVarList dmVars;
    out << "\ndm "
        << dataModel.ParseToDOM(zrxtest::ReadFile(kExamples + "/job.datamodel.xml")).GetCode()
        << dataModel.FillVarList(dmVars, false, true, 10).GetCode() << dmVars;

    ZRXPrsUtil::ZRPMMLParser reader;
    std::ifstream pmml(ZRX_TEST_DATA_DIR "/pmml/dictionary.pmml", std::ios::binary);
    ZRVarList vars;
    out << "pmml " << reader.ParseToDOM(pmml).GetCode()
        << reader.FillVarList(vars, {}, false).GetCode() << vars;
    const xercesc::DOMElement* root = reader.GetRootElement();
    const xercesc::DOMElement* model =
        root ? ZRXPrsUtil::GetFirstChildElmt(*root, "TreeModel") : nullptr;
    const xercesc::DOMElement* position = nullptr;
    if (model && reader.SetModelElmt(*model)) {
        do {
            ZRMTD_NAMESPACE::ZRUniStats stats;
            const ZRCommon::ZRStatus st = reader.FillUniStats(stats, position);
            out << st.GetCode() << '=' << stats.GetFieldName() << '/' << stats.GetTotalFreq()
                << ';';
        } while (position);
    }

    ZRXPrsUtil::ZRSettingsParser settings;
    std::ifstream job(kExamples + "/job.settings.xml", std::ios::binary);
    ZRVarList settingsVars;
    out << "\nsettings " << settings.ParseToDOM(job).GetCode()
        << settings.FillVarList(settingsVars, false).GetCode()
        << settings.FillTransDict(settingsVars).GetCode() << settingsVars;
    std::vector<std::string> targets;
    settings.GetTargetVars(targets);
    for (const std::string& t : targets)
        out << t << ',';
    int depth = 0;
    double alpha = 0.0;
    out << settings.GetParameter("maxTreeDepth", depth).GetCode() << '=' << depth << ' '
        << settings.GetParameter("alphaSplit", alpha).GetCode() << '=' << alpha << '\n';

    ZRVarList splitVars;
    const std::vector<std::string> regions = {"E", "N", "S", "W"};
    splitVars.AddCatVar("region", "Sales region", regions,
                        ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(splitVars);
    out << "combine ";
    for (const std::string& region : regions)
        out << combiner.AddModel(kExamples + "/split/churn_" + region + ".pmml", {region})
                   .GetCode();
    const std::string combined = dir.File("combined_" + tag + ".pmml");
    out << ' ' << combiner.ExportMiningModel(combined).GetCode() << '\n'
        << zrxtest::ReadFile(combined);

    ZRXPrsUtil::ZRXMLReadWrite io;
    const std::string written = dir.File("written_" + tag + ".xml");
    out << "\nrw " << io.ParseToDOM(kExamples + "/job.datamodel.xml").GetCode() << ' '
        << io.WriteFromDOM(written).GetCode() << '\n'
        << zrxtest::ReadFile(written) << '\n';

    const std::string text = "caf\xC3\xA9 \xE4\xB8\xAD \xE2\x82\xAC";
    void* own = ZRMem::VORKMBConverterNew_C("1252");
    std::string page;
    std::string back;
    out << "conv " << ZRMem::VORKMBU8ToCodePage(own, page, text)
        << ZRMem::VORKMBCodePageToU8(own, back, page) << back;
    ucnv_close(static_cast<UConverter*>(own));
    out << ZRMem::VORKMBU8ToCodePage(nullptr, page, text)
        << ZRMem::VORKMBCodePageToU8(nullptr, back, page) << back;
    ZRMem::U16String units;
    out << ZRMem::VORKMBU8ToU16(units, text) << units.size() << ZRMem::VORKMBU16ToU8(back, units)
        << back;
    ZRMem::ExtNameStr name;
    name.SetU8(text);
    out << name.GetU16().size() << '\n';
    return out.str();
}

TEST(Threads, EightThreadsWithObjectsOfTheirOwnGiveWhatOneThreadGives)
{
    zrxtest::TempDir dir("threads");
    const std::string expected = Everything(dir, "0");
    ASSERT_NE(std::string::npos, expected.find("combine 0000 0"));
    ASSERT_NE(std::string::npos, expected.find("rw 0 0"));

    const int kThreads = 8;
    const int kRounds = 4;
    std::vector<std::vector<std::string>> results(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&dir, &results, t] {
            for (int round = 0; round < kRounds; ++round)
                results[t].push_back(
                    Everything(dir, std::to_string(t + 1) + "_" + std::to_string(round)));
        });
    for (std::thread& thread : threads)
        thread.join();
    // Every object gave its share of the XML library back.
    EXPECT_EQ(0, ZRXPrsUtil::ZRXPlatform::Shares());
    for (int t = 0; t < kThreads; ++t)
        EXPECT_EQ(std::vector<std::string>(kRounds, expected), results[t]) << "thread " << t;
}

} // namespace
