// Speed of the PMML reader on generated documents of 1,000, 10,000 and
// 100,000 DataFields: the bare XML parse of the bytes, ParseToDOM, and
// FillVarList on the parsed document. FillVarList should take no more than
// half of the bare parse, and grow linearly with the number of fields; with
// a list of wanted fields that names them all it should take at most 1.5
// times as long as without a list.
#include <zrparsexmlr/ZRPMMLParser.h>

#include "BenchBareParse.h"
#include "ZRXPrsUtilInternal.h"

#include <benchmark/benchmark.h>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <map>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

// A dictionary of `fields` DataFields: 40% categorical strings, 20%
// categorical integers (each with 5 to 50 Values, some labelled, some
// missing) and 40% continuous doubles with an Interval, a missing Value and
// the two invalid-range Extensions.
std::string MakeDocument(int fields) {
    std::mt19937 random(12345);
    std::ostringstream out;
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<PMML xmlns=\"http://www.dmg.org/PMML-4_4\" version=\"4.4\">\n"
           "  <Header copyright=\"bench\"/>\n  <DataDictionary numberOfFields=\""
        << fields << "\">\n";
    for (int i = 0; i < fields; ++i) {
        const int kind = i % 5;
        if (kind < 3) {
            const bool numeric = kind == 2;
            const int values = 5 + static_cast<int>(random() % 46);
            const bool labelled = random() % 2 == 0;
            out << "    <DataField name=\"field_" << i << "\" displayName=\"Field number " << i
                << "\" optype=\"categorical\" dataType=\"" << (numeric ? "integer" : "string")
                << "\">\n";
            for (int v = 0; v < values; ++v) {
                out << "      <Value value=\"" << (numeric ? "" : "category_") << v << "\"";
                if (labelled)
                    out << " displayValue=\"Category " << v << " of field " << i << "\"";
                out << "/>\n";
            }
            out << "      <Value value=\"" << (numeric ? "99" : "unknown")
                << "\" displayValue=\"not stated\" property=\"missing\"/>\n"
                << "    </DataField>\n";
        } else {
            const double low = static_cast<double>(random() % 1000);
            out << "    <DataField name=\"field_" << i
                << "\" optype=\"continuous\" dataType=\"double\">\n"
                << "      <Extension extender=\"bench\" name=\"invalidRangeLower\" value=\""
                << low + 900.5 << "\"/>\n"
                << "      <Extension extender=\"bench\" name=\"invalidRangeUpper\" value=\""
                << low + 999.25 << "\"/>\n"
                << "      <Interval closure=\"closedClosed\" leftMargin=\"" << low
                << "\" rightMargin=\"" << low + 800.75 << "\"/>\n"
                << "      <Value value=\"-1\" displayValue=\"refused\" property=\"missing\"/>\n"
                << "    </DataField>\n";
        }
    }
    out << "  </DataDictionary>\n</PMML>\n";
    return out.str();
}

const std::string& Document(int fields) {
    static std::map<int, std::string> documents;
    auto found = documents.find(fields);
    if (found == documents.end())
        found = documents.emplace(fields, MakeDocument(fields)).first;
    return found->second;
}

void XercesParseAlone(benchmark::State& state) {
    ZRXPrsUtil::ZRPMMLParser keepsLibraryStarted;
    TimeBareParse(state, Document(static_cast<int>(state.range(0))));
}

void ParseToDOM(benchmark::State& state) {
    const std::string& text = Document(static_cast<int>(state.range(0)));
    ZRXPrsUtil::ZRPMMLParser parser;
    for (auto _ : state) {
        std::istringstream stream(text);
        if (!parser.ParseToDOM(stream).IsOK())
            state.SkipWithError("parse failed");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

// FillVarList of the document of `fields` fields, with the list of wanted
// names `wanted`.
void TimeFill(benchmark::State& state, int fields, const std::vector<std::string>& wanted) {
    std::istringstream stream(Document(fields));
    ZRXPrsUtil::ZRPMMLParser parser;
    if (!parser.ParseToDOM(stream).IsOK())
        state.SkipWithError("parse failed");
    auto fill = [&](ZRMetadata::ZRVarList& list) {
        if (!parser.FillVarList(list, wanted, false).IsOK() ||
            list.Size() != static_cast<std::size_t>(fields))
            state.SkipWithError("fill failed");
    };
    // One untimed fill first, so that every timed list, at every size, goes
    // into memory the process has used before. The largest size runs one
    // iteration per repetition, which would otherwise be the first fill
    // after the parse: a third to a half of its time went to the kernel
    // supplying the list's fresh pages, which the smaller sizes, with many
    // iterations, pay once and not per iteration.
    {
        ZRMetadata::ZRVarList warmUp;
        fill(warmUp);
    }
    for (auto _ : state) {
        state.PauseTiming();
        auto list = std::make_unique<ZRMetadata::ZRVarList>();
        state.ResumeTiming();
        fill(*list);
        state.PauseTiming();
        list.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * fields);
}

void FillVarList(benchmark::State& state) {
    TimeFill(state, static_cast<int>(state.range(0)), {});
}

// Every field named in the list of wanted fields, last name first: the
// lookup of each field's name in the list is the only work beyond
// FillVarList/N. Goal: FillVarListWanted/20000 at most 1.5 x FillVarList/20000.
void FillVarListWanted(benchmark::State& state) {
    const int fields = static_cast<int>(state.range(0));
    std::vector<std::string> wanted;
    for (int i = fields - 1; i >= 0; --i)
        wanted.push_back("field_" + std::to_string(i));
    TimeFill(state, fields, wanted);
}

} // namespace

// The largest size runs a single iteration per repetition, so each figure is
// the median of five repetitions.
#define ZRX_PMML_SIZES(bench)                                                               \
    BENCHMARK(bench)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)     \
        ->Repetitions(5)->ReportAggregatesOnly(true)
ZRX_PMML_SIZES(XercesParseAlone);
ZRX_PMML_SIZES(ParseToDOM);
ZRX_PMML_SIZES(FillVarList);
BENCHMARK(FillVarList)->Arg(20000)->Unit(benchmark::kMillisecond)->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(FillVarListWanted)->Arg(20000)->Unit(benchmark::kMillisecond)->Repetitions(9)
    ->ReportAggregatesOnly(true);

BENCHMARK_MAIN();
