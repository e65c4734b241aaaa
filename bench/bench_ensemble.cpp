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

#include "ZRPMMLBodyFilter.h"
#include "ZRXPlatform.h"

#include <benchmark/benchmark.h>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

enum Way { kSaxScan, kWithBodies, kBodiesSkipped };
const char* const kWayNames[] = {"SAX scan", "with bodies", "bodies skipped"};

// What a child reports through its pipe.
struct Outcome {
    double seconds = 0.0; // processor time
    double wallSeconds = 0.0;
    long elements = 0;   // elements the SAX handler saw
    long variables = 0;  // variables FillVarList added
    long statistics = 0; // UnivariateStats read OK
    bool ok = false;
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

class CountingHandler : public xercesc::DefaultHandler {
public:
    void startElement(const XMLCh* const, const XMLCh* const, const XMLCh* const,
                      const xercesc::Attributes&) override
    {
        ++elements;
    }
    long elements = 0;
};

void SaxScan(const std::string& path, Outcome& outcome)
{
    const bool held = ZRXPrsUtil::ZRXPlatform::Acquire();
    {
        xercesc::SecurityManager security;
        security.setEntityExpansionLimit(xercesc::SecurityManager::ENTITY_EXPANSION_LIMIT);
        std::unique_ptr<xercesc::SAX2XMLReader> reader(
            xercesc::XMLReaderFactory::createXMLReader());
        reader->setFeature(xercesc::XMLUni::fgSAX2CoreNameSpaces, false);
        reader->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, false);
        reader->setFeature(xercesc::XMLUni::fgXercesLoadExternalDTD, false);
        reader->setFeature(xercesc::XMLUni::fgXercesDisableDefaultEntityResolution, true);
        reader->setProperty(xercesc::XMLUni::fgXercesSecurityManager, &security);
        CountingHandler handler;
        reader->setContentHandler(&handler);
        reader->setErrorHandler(&handler);
        std::ifstream in(path, std::ios::binary);
        ZRXPrsUtil::ZRXInputSource source(in);
        reader->parse(source);
        outcome.elements = handler.elements;
        outcome.ok = reader->getErrorCount() == 0 && handler.elements > 0;
    }
    if (held)
        ZRXPrsUtil::ZRXPlatform::Release();
}

void Read(const std::string& path, bool readBodies, Outcome& outcome)
{
    ZRXPrsUtil::ZRPMMLParser reader;
    reader.SetReadModelBodies(readBodies);
    std::ifstream in(path, std::ios::binary);
    if (!reader.ParseToDOM(in).IsOK())
        return;
    ZRMetadata::ZRVarList variables;
    if (!reader.FillVarList(variables, {}, false).IsOK())
        return;
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
    outcome.ok = true;
}

double ProcessorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Runs one way on the document in a child process: its own time and its
// peak resident size in MB.
bool RunInChild(Way way, const std::string& path, Outcome& outcome, double& peakMB)
{
    int channel[2];
    if (pipe(channel) != 0)
        return false;
    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0) {
        close(channel[0]);
        Outcome mine;
        const double cpuStart = ProcessorSeconds();
        const auto start = std::chrono::steady_clock::now();
        if (way == kSaxScan)
            SaxScan(path, mine);
        else
            Read(path, way == kWithBodies, mine);
        mine.wallSeconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        mine.seconds = ProcessorSeconds() - cpuStart;
        const bool written = write(channel[1], &mine, sizeof mine) == sizeof mine;
        // No teardown of the document: it is not part of the reading.
        _exit(written ? 0 : 1);
    }
    close(channel[1]);
    const bool read = ::read(channel[0], &outcome, sizeof outcome) == sizeof outcome;
    close(channel[0]);
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child)
        return false;
    peakMB = static_cast<double>(usage.ru_maxrss) / 1024.0; // kB on Linux
    return read && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

struct Sample {
    double seconds;
    double wallSeconds;
    double peakMB;
};
std::map<std::pair<int, int>, std::vector<Sample>> gSamples; // (size, way)

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
        double peakMB = 0.0;
        if (!RunInChild(way, path, outcome, peakMB) || !outcome.ok) {
            state.SkipWithError("the child failed");
            return;
        }
        if (way != kSaxScan && (outcome.variables != 41 || outcome.statistics != 40)) {
            state.SkipWithError("wrong variables or statistics");
            return;
        }
        state.SetIterationTime(outcome.seconds);
        state.counters["peak_MB"] = peakMB;
        state.counters["wall_s"] = outcome.wallSeconds;
        gSamples[{megabytes, way}].push_back({outcome.seconds, outcome.wallSeconds, peakMB});
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(path)));
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

std::vector<double> Field(const std::vector<Sample>& samples, double Sample::*field)
{
    std::vector<double> values;
    for (const Sample& s : samples)
        values.push_back(s.*field);
    return values;
}

void PrintTable()
{
    if (gSamples.empty())
        return;
    std::printf("\n%-6s %-15s %10s %10s %10s %12s %12s\n", "MB", "way", "cpu s", "wall s",
                "peak MB", "cpu / SAX", "peak / SAX");
    for (const auto& [key, samples] : gSamples) {
        const double time = Median(Field(samples, &Sample::seconds));
        const double peak = Median(Field(samples, &Sample::peakMB));
        const auto sax = gSamples.find({key.first, kSaxScan});
        const double saxTime =
            sax == gSamples.end() ? 0.0 : Median(Field(sax->second, &Sample::seconds));
        const double saxPeak =
            sax == gSamples.end() ? 0.0 : Median(Field(sax->second, &Sample::peakMB));
        std::printf("%-6d %-15s %10.3f %10.3f %10.1f %12.2f %12.1f\n", key.first,
                    kWayNames[key.second], time, Median(Field(samples, &Sample::wallSeconds)), peak,
                    saxTime > 0 ? time / saxTime : 0.0, saxPeak > 0 ? peak / saxPeak : 0.0);
    }
    rusage self{};
    getrusage(RUSAGE_SELF, &self);
    std::printf("(medians of the repetitions; the driver process itself peaked at %.1f MB)\n",
                static_cast<double>(self.ru_maxrss) / 1024.0);
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
    PrintTable();
    benchmark::Shutdown();
    return 0;
}
