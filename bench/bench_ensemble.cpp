// Reading a large tree ensemble (bench/make_ensemble.py: a MiningModel of
// trees of depth 10 over 41 fields, with ModelStats for the 40 inputs) of
// 50 MB and 268 MB, three ways:
//   SaxScan        the XML library's SAX2 reader with a handler that builds
//                  nothing, set as the library's own parsers are (no
//                  namespaces, no validation, the same entity limits): the
//                  yardstick;
//   WithBodies     ZRPMMLParser::ParseToDOM, FillVarList and the FillUniStats
//                  walk over every model element of the root;
//   BodiesSkipped  the same with SetReadModelBodies(false).
// Each run goes in a child process of its own, which times itself and whose
// peak resident size the kernel reports to wait4. The time is the processor
// time (user and system) of the reading alone, from the start of the XML
// library to the end of the walk, as the machine is shared and its wall
// clock drifts with the load; the wall time is given beside it. The documents are made once into the build folder. After the runs
// a table gives the medians and the ratios to the SAX scan of the same run.
//
// Goal: BodiesSkipped on 268 MB within 1.3 times the SAX scan, in at most
// 100 MB.
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRXPrsUtil.h>

#include "BenchChild.h"
#include "ZRPMMLBodyFilter.h"

#include <benchmark/benchmark.h>
#include <xercesc/dom/DOMElement.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

enum Way { kSaxScan, kWithBodies, kBodiesSkipped };
const char* const kWayNames[] = {"SAX scan", "with bodies", "bodies skipped"};

// What a child reports beside its times.
struct Outcome {
    long elements = 0;   // elements the SAX handler saw
    long variables = 0;  // variables FillVarList added
    long statistics = 0; // UnivariateStats read OK
};

// The document of about `megabytes` MB, made by the generator when it is not
// there yet; empty when it can't be made.
std::string Ensemble(int megabytes)
{
    const std::string path =
        std::string(ZRX_BENCH_DATA_DIR) + "/ensemble_" + std::to_string(megabytes) + "mb.pmml";
    if (std::filesystem::exists(path))
        return path;
    const std::string command = std::string(ZRX_PYTHON) + " \"" + ZRX_ENSEMBLE_SCRIPT + "\" \"" +
                                path + "\" --size-mb " + std::to_string(megabytes) +
                                " --depth 10 --fields 41";
    if (std::system(command.c_str()) != 0 || !std::filesystem::exists(path))
        return std::string();
    return path;
}

bool Read(const std::string& path, bool readBodies, Outcome& outcome)
{
    ZRXPrsUtil::ZRPMMLParser reader;
    reader.SetReadModelBodies(readBodies);
    std::ifstream in(path, std::ios::binary);
    if (!reader.ParseToDOM(in).IsOK())
        return false;
    ZRMetadata::ZRVarList variables;
    if (!reader.FillVarList(variables, {}, false).IsOK())
        return false;
    outcome.variables = static_cast<long>(variables.Size());
    for (const xercesc::DOMElement* model =
             ZRXPrsUtil::GetFirstChildElmt(*reader.GetRootElement(), nullptr);
         model; model = ZRXPrsUtil::GetNextSiblingElmt(*model, nullptr)) {
        if (!ZRXPrsUtil::IsPMMLModelTag(model->getTagName()))
            continue;
        reader.SetModelElmt(*model);
        ZRMetadata::ZRUniStats stats;
        const xercesc::DOMElement* position = nullptr;
        do {
            if (reader.FillUniStats(stats, position).IsOK() && position)
                ++outcome.statistics;
        } while (position);
    }
    return true;
}

zrxbench::SampleTable gSamples;

void ReadEnsemble(benchmark::State& state)
{
    const int megabytes = static_cast<int>(state.range(0));
    const Way way = static_cast<Way>(state.range(1));
    const std::string path = Ensemble(megabytes);
    if (path.empty()) {
        state.SkipWithError("the ensemble could not be made (is Python 3 there?)");
        return;
    }
    for (auto _ : state) {
        Outcome outcome;
        zrxbench::Sample sample;
        const bool ran = zrxbench::RunInChild(
            [&](Outcome& mine) {
                if (way != kSaxScan)
                    return Read(path, way == kWithBodies, mine);
                mine.elements = zrxbench::SaxScan(path);
                return mine.elements > 0;
            },
            outcome, sample);
        if (!ran) {
            state.SkipWithError("the child failed");
            return;
        }
        if (way != kSaxScan && (outcome.variables != 41 || outcome.statistics != 40)) {
            state.SkipWithError("wrong variables or statistics");
            return;
        }
        state.SetIterationTime(sample.seconds);
        state.counters["peak_MB"] = sample.peakMB;
        state.counters["wall_s"] = sample.wallSeconds;
        gSamples.Add(megabytes, way, sample);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(path)));
}

} // namespace

// One iteration per repetition: each is a whole reading in a fresh process.
BENCHMARK(ReadEnsemble)
    ->ArgNames({"MB", "way"})
    ->ArgsProduct({{50, 268}, {kSaxScan, kBodiesSkipped, kWithBodies}})
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    gSamples.Print("MB", kWayNames, kSaxScan);
    benchmark::Shutdown();
    return 0;
}
