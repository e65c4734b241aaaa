// Reading the dictionary of a wide data set (bench/make_wide.py: one field
// element per variable, 60% categorical with 5 to 50 labelled values, 40%
// continuous) of 10,000, 100,000 and 1,000,000 fields, as PMML and as a
// DataModel, in these ways:
//   SAX scan       the XML library's SAX2 reader with a handler that builds
//                  nothing, set as the library's parsers are: the yardstick;
//   fields in DOM  ParseToDOM and FillVarList as they are by default;
//   fields out     the same with SetFieldsInDOM(false) (and, for PMML,
//                  SetReadModelBodies(false));
//   zrx inspect    (PMML) zrx inspect --json, its output to /dev/null: the
//                  whole process, start and end included, from wait4.
// Each run goes in a child process of its own (BenchChild.h) that times the
// reading alone (for a DataModel, reading the file into the text that the
// reader takes is part of it) and whose peak resident size the kernel
// reports. The documents are made once into the build folder; the table at
// the end gives the medians and the ratios to the SAX scan of the same run.
//
// The DOM of a field takes some 20 KB, so the fields-in-DOM way of a million
// fields would take about 20 GB: when ten times the peak of 100,000 fields
// (or, without that figure, 18 times the document) is more than half of this
// machine's memory, that case is left out with the reason.
//
// Goals: 100,000 PMML fields out within 1.5 times the SAX scan in at most
// 400 MB; 1,000,000 fields out within 12 times the time of 100,000; zrx
// inspect within 1.2 times the time and peak of fields out.
#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRPMMLParser.h>

#include "BenchChild.h"

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

enum Kind { kPMML, kDataModel };
enum Way { kSaxScan, kFieldsInDOM, kFieldsOut, kInspect };
const char* const kWayNames[] = {"SAX scan", "fields in DOM", "fields out", "zrx inspect"};

struct Outcome {
    long variables = 0;
    double fillSeconds = 0.0; // of which FillVarList, building the list
};

// The document of that kind and size, made by the generator when it is not
// there yet; empty when it can't be made.
std::string Document(Kind kind, long fields)
{
    const std::string path = std::string(ZRX_BENCH_DATA_DIR) + "/wide_" +
                             (kind == kPMML ? "pmml_" : "datamodel_") + std::to_string(fields) +
                             (kind == kPMML ? ".pmml" : ".xml");
    if (std::filesystem::exists(path))
        return path;
    const std::string command = std::string(ZRX_PYTHON) + " \"" + ZRX_WIDE_SCRIPT + "\" \"" + path +
                                "\" --fields " + std::to_string(fields) +
                                (kind == kPMML ? " --kind pmml" : " --kind datamodel");
    if (std::system(command.c_str()) != 0 || !std::filesystem::exists(path))
        return std::string();
    return path;
}

bool Read(Kind kind, const std::string& path, bool fieldsInDOM, Outcome& outcome)
{
    ZRMetadata::ZRVarList variables;
    if (kind == kPMML) {
        ZRXPrsUtil::ZRPMMLParser reader;
        reader.SetFieldsInDOM(fieldsInDOM);
        reader.SetReadModelBodies(fieldsInDOM);
        std::ifstream in(path, std::ios::binary);
        if (!reader.ParseToDOM(in).IsOK())
            return false;
        const double start = zrxbench::ProcessorSeconds();
        if (!reader.FillVarList(variables, {}, false).IsOK())
            return false;
        outcome.fillSeconds = zrxbench::ProcessorSeconds() - start;
    } else {
        std::ifstream in(path, std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(in)),
                               std::istreambuf_iterator<char>());
        ZRXPrsUtil::ZRDataModelParser reader;
        reader.SetFieldsInDOM(fieldsInDOM);
        if (!reader.ParseToDOM(text).IsOK())
            return false;
        const double start = zrxbench::ProcessorSeconds();
        if (!reader.FillVarList(variables, false, false, 0).IsOK())
            return false;
        outcome.fillSeconds = zrxbench::ProcessorSeconds() - start;
    }
    outcome.variables = static_cast<long>(variables.Size());
    return true;
}

zrxbench::SampleTable gTables[2];

double MachineMB()
{
    return static_cast<double>(sysconf(_SC_PHYS_PAGES)) *
           static_cast<double>(sysconf(_SC_PAGE_SIZE)) / (1024.0 * 1024.0);
}

// Why the fields-in-DOM way of this size is left out, or empty.
std::string LeftOut(Kind kind, long fields, const std::string& path)
{
    if (fields <= 100000)
        return std::string();
    const double documentMB =
        static_cast<double>(std::filesystem::file_size(path)) / (1024.0 * 1024.0);
    double estimate = 18.0 * documentMB;
    std::string basis = "18 times the document";
    if (gTables[kind].Has(100000, kFieldsInDOM)) {
        estimate =
            gTables[kind].PeakMedian(100000, kFieldsInDOM) * static_cast<double>(fields) / 100000.0;
        basis = "the peak of 100,000 fields, scaled";
    }
    if (estimate <= MachineMB() / 2)
        return std::string();
    char reason[200];
    std::snprintf(reason, sizeof reason,
                  "left out: the DOM would take some %.1f GB (%s) of this machine's %.1f GB",
                  estimate / 1024.0, basis.c_str(), MachineMB() / 1024.0);
    return reason;
}

void ReadWide(benchmark::State& state)
{
    const Kind kind = static_cast<Kind>(state.range(0));
    const long fields = static_cast<long>(state.range(1));
    const Way way = static_cast<Way>(state.range(2));
    if (way == kInspect && std::string(ZRX_TOOL).empty()) {
        state.SkipWithError("zrx is not built (ZRX_BUILD_TOOLS)");
        return;
    }
    const std::string path = Document(kind, fields);
    if (path.empty()) {
        state.SkipWithError("the document could not be made (is Python 3 there?)");
        return;
    }
    const std::string leftOut = way == kFieldsInDOM ? LeftOut(kind, fields, path) : "";
    if (!leftOut.empty()) {
        std::printf("%s, %ld fields, %s: %s\n", kind == kPMML ? "PMML" : "DataModel", fields,
                    kWayNames[way], leftOut.c_str());
        state.SkipWithError(leftOut.c_str());
        return;
    }
    for (auto _ : state) {
        Outcome outcome;
        zrxbench::Sample sample;
        bool ran = false;
        if (way == kInspect) {
            ran = zrxbench::RunProgram({ZRX_TOOL, "inspect", "--json", path}, sample);
            outcome.variables = fields;
        } else {
            ran = zrxbench::RunInChild(
                [&](Outcome& mine) {
                    if (way == kSaxScan)
                        return zrxbench::SaxScan(path) > fields;
                    return Read(kind, path, way == kFieldsInDOM, mine);
                },
                outcome, sample);
        }
        if (!ran) {
            state.SkipWithError("the child failed");
            return;
        }
        if (way != kSaxScan && outcome.variables != fields) {
            state.SkipWithError("wrong number of variables");
            return;
        }
        state.SetIterationTime(sample.seconds);
        state.counters["peak_MB"] = sample.peakMB;
        state.counters["wall_s"] = sample.wallSeconds;
        if (way == kFieldsInDOM || way == kFieldsOut)
            state.counters["fill_s"] = outcome.fillSeconds;
        gTables[kind].Add(fields, way, sample);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(path)));
}

} // namespace

// One iteration per repetition, each a whole reading in a fresh process. The
// sizes vary fastest, so that the fields-in-DOM way of a million fields comes
// after that of 100,000, by whose peak it is judged.
BENCHMARK(ReadWide)
    ->ArgNames({"kind", "fields", "way"})
    ->ArgsProduct({{kPMML},
                   {10000, 100000, 1000000},
                   {kSaxScan, kFieldsInDOM, kFieldsOut, kInspect}})
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ReadWide)
    ->ArgNames({"kind", "fields", "way"})
    ->ArgsProduct({{kDataModel}, {10000, 100000, 1000000}, {kSaxScan, kFieldsInDOM, kFieldsOut}})
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    std::printf("\nPMML");
    gTables[kPMML].Print("fields", kWayNames, kSaxScan);
    std::printf("\nDataModel");
    gTables[kDataModel].Print("fields", kWayNames, kSaxScan);
    benchmark::Shutdown();
    return 0;
}
