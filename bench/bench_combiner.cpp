// The split-model combiner over M generated TreeModel files, each with 50
// fields (30 shared by all models, 20 of its own) and a 40-node tree, for one
// and two split variables; and, as the yardstick, a bare XercesDOMParser
// parsing the same files.
//
//   bench_combiner                      all of it
//   bench_combiner --benchmark_filter=Combine/1000
//
// Goals: time per model flat in M (Combine/5000 at most 60 x Combine/100) and
// Combine/1000 at most 3 x BareParse/1000. Besides, one field of 20,000
// values: a later model that brings 20,000 new values to it takes at most 1.5
// times the first model (ValuesLaterModel against ValuesFirstModel).
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>
#include <zrcommonr/ZRVarList.h>

#include "ZRXPlatform.h"

#include <xercesc/parsers/XercesDOMParser.hpp>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

const int kShared = 30;
const int kOwn = 20;
const int kNodes = 40;

std::string ModelText(int model)
{
    std::string text = "<?xml version=\"1.0\"?>\n<PMML xmlns=\"http://www.dmg.org/PMML-4_4\" "
                       "version=\"4.4\">\n<Header copyright=\"bench\"/>\n<DataDictionary>\n";
    auto name = [model](int field) {
        return field < kShared ? "s" + std::to_string(field)
                               : "m" + std::to_string(model) + "_" + std::to_string(field);
    };
    for (int f = 0; f < kShared + kOwn; ++f) {
        if (f % 5 == 0) {
            text +=
                "<DataField name=\"" + name(f) + "\" optype=\"categorical\" dataType=\"string\">";
            for (int v = 0; v < 4; ++v)
                text += "<Value value=\"c" + std::to_string((v + model) % 6) + "\"/>";
            text += "</DataField>\n";
        } else {
            text +=
                "<DataField name=\"" + name(f) + "\" optype=\"continuous\" dataType=\"double\"/>\n";
        }
    }
    text += "</DataDictionary>\n<TreeModel functionName=\"classification\">\n<MiningSchema>\n";
    for (int f = 0; f < kShared + kOwn; ++f)
        text += "<MiningField name=\"" + name(f) + "\"" + (f == 0 ? " usageType=\"target\"" : "") +
                "/>\n";
    text += "</MiningSchema>\n";
    // A full binary tree of kNodes nodes in document order: node i has the
    // children 2i+1 and 2i+2.
    std::function<void(int)> node = [&](int i) {
        const int field = 1 + (i % (kShared + kOwn - 1));
        text += "<Node score=\"c" + std::to_string(i % 4) + "\">";
        text += i == 0 ? std::string("<True/>")
                       : "<SimplePredicate field=\"" + name(field) +
                             "\" operator=\"lessThan\" value=\"" + std::to_string(i) + ".5\"/>";
        for (int c = 2 * i + 1; c <= 2 * i + 2 && c < kNodes; ++c)
            node(c);
        text += "</Node>\n";
    };
    node(0);
    text += "</TreeModel>\n</PMML>\n";
    return text;
}

// The files of M models, written once per process.
const std::vector<std::string>& ModelFiles(int count)
{
    // A folder of the process, removed at its end.
    struct Folder {
        Folder()
        {
            char pattern[] = "/tmp/zrx-bench-combiner-XXXXXX";
            const char* made = mkdtemp(pattern);
            path = made != nullptr ? made : "";
        }
        ~Folder()
        {
            if (!path.empty())
                std::filesystem::remove_all(path);
        }
        std::string path;
    };
    static std::map<int, std::vector<std::string>> made;
    static const Folder folder;
    const std::string& dir = folder.path;
    std::vector<std::string>& files = made[count];
    if (files.empty()) {
        for (int i = 0; i < count; ++i) {
            const std::string path = dir + "/model" + std::to_string(i) + ".pmml";
            if (!std::filesystem::exists(path))
                std::ofstream(path) << ModelText(i);
            files.push_back(path);
        }
    }
    return files;
}

void Combine(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    const bool two = state.range(1) == 2;
    const std::vector<std::string>& files = ModelFiles(count);
    ZRMTD_NAMESPACE::ZRVarList list;
    list.AddCatVar("region", "Region", std::vector<std::string>{"r0", "r1", "r2"},
                   ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    if (two)
        list.AddCatVar("band", "Band", std::vector<double>{1, 2, 3},
                       ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    const std::string out = files.front() + ".combined.pmml";
    for (auto _ : state) {
        ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(list);
        for (int i = 0; i < count; ++i) {
            std::vector<std::string> values{"r" + std::to_string(i)};
            if (two)
                values.push_back(std::to_string(i % 7));
            if (!combiner.AddModel(files[i], values).IsOK())
                state.SkipWithError("a model was refused");
        }
        if (!combiner.ExportMiningModel(out).IsOK())
            state.SkipWithError("the export failed");
    }
    state.counters["per_model_us"] = benchmark::Counter(
        static_cast<double>(count) * 1e-6,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BareParse(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    const std::vector<std::string>& files = ModelFiles(count);
    const bool held = ZRXPrsUtil::ZRXPlatform::Acquire();
    {
        xercesc::XercesDOMParser parser;
        for (auto _ : state) {
            for (const std::string& file : files) {
                parser.parse(file.c_str());
                benchmark::DoNotOptimize(parser.getDocument());
            }
        }
    }
    if (held)
        ZRXPrsUtil::ZRXPlatform::Release();
    state.counters["per_model_us"] = benchmark::Counter(
        static_cast<double>(count) * 1e-6,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// A model whose one field "f" lists the values v<first> to v<first+count-1>.
std::string ValuesModelText(int first, int count)
{
    std::string text = "<?xml version=\"1.0\"?>\n<PMML version=\"4.4\">\n<DataDictionary>\n"
                       "<DataField name=\"f\" optype=\"categorical\" dataType=\"string\">\n";
    for (int v = first; v < first + count; ++v)
        text += "<Value value=\"v" + std::to_string(v) + "\"/>\n";
    text += "</DataField>\n</DataDictionary>\n<TreeModel functionName=\"classification\">\n"
            "<MiningSchema><MiningField name=\"f\"/></MiningSchema>\n"
            "<Node score=\"a\"><True/></Node>\n</TreeModel>\n</PMML>\n";
    return text;
}

// Two files of N values each, none shared, written once per process.
const std::vector<std::string>& ValuesModelFiles(int count)
{
    static std::map<int, std::vector<std::string>> made;
    std::vector<std::string>& files = made[count];
    if (files.empty()) {
        const std::string dir = std::filesystem::path(ModelFiles(1).front()).parent_path();
        for (int i = 0; i < 2; ++i) {
            const std::string path =
                dir + "/values" + std::to_string(count) + "_" + std::to_string(i) + ".pmml";
            std::ofstream(path) << ValuesModelText(i * count, count);
            files.push_back(path);
        }
    }
    return files;
}

// AddModel of the first values model (`later` false), or of the second,
// which adds all its N values to the field, after the first (`later` true).
// Only that AddModel is timed. Goal: ValuesLaterModel/20000 at most 1.5 x
// ValuesFirstModel/20000.
void TimeValuesModel(benchmark::State& state, bool later)
{
    const std::vector<std::string>& files = ValuesModelFiles(static_cast<int>(state.range(0)));
    ZRMTD_NAMESPACE::ZRVarList list;
    list.AddCatVar("region", "Region", std::vector<std::string>{"r0", "r1"},
                   ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    for (auto _ : state) {
        state.PauseTiming();
        auto combiner = std::make_unique<ZRXPrsUtil::ZRXSplitPMMLCombiner>(list);
        if (later && !combiner->AddModel(files[0], {"r0"}).IsOK())
            state.SkipWithError("the first model was refused");
        state.ResumeTiming();
        if (!combiner->AddModel(files[later ? 1 : 0], {"r1"}).IsOK())
            state.SkipWithError("a model was refused");
        state.PauseTiming();
        combiner.reset();
        state.ResumeTiming();
    }
}

void ValuesFirstModel(benchmark::State& state)
{
    TimeValuesModel(state, false);
}

void ValuesLaterModel(benchmark::State& state)
{
    TimeValuesModel(state, true);
}

} // namespace

BENCHMARK(ValuesFirstModel)
    ->ArgNames({"values"})
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(ValuesLaterModel)
    ->ArgNames({"values"})
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(Combine)
    ->ArgNames({"models", "splitvars"})
    ->Args({100, 1})
    ->Args({1000, 1})
    ->Args({5000, 1})
    ->Args({100, 2})
    ->Args({1000, 2})
    ->Args({5000, 2})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BareParse)->ArgNames({"models"})->Arg(1000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
