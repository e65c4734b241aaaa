// Speed of the settings reader beside the bare XML parse of the same bytes:
// GetParameter over a Parameters element of 10,000 parameters (the first,
// the middle and the last one, the last walking past all others), and
// FillVarList on a settings document of 10,000 DataFields.
#include <zrparsexmlr/ZRSettingsParser.h>

#include "BenchBareParse.h"
#include "ZRXPrsUtilInternal.h"

#include <benchmark/benchmark.h>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <memory>
#include <sstream>
#include <string>

namespace {

const int kCount = 10000;

std::string Task(const std::string& parameters)
{
    return "  <MiningBuildTask>\n    <Extension extender=\"bench\" name=\"settings\">\n"
           "      <Parameters>\n" +
           parameters +
           "      </Parameters>\n"
           "    </Extension>\n  </MiningBuildTask>\n";
}

// Parameters of every kind in turn: integers, doubles, booleans, texts, and
// lists of five values.
std::string MakeParametersDocument()
{
    std::ostringstream out;
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PMML version=\"4.4\">\n"
           "  <DataDictionary/>\n";
    std::ostringstream parameters;
    for (int i = 0; i < kCount; ++i) {
        parameters << "        <Parameter name=\"parameter_" << i << "\"";
        switch (i % 5) {
        case 0: parameters << " type=\"integer\" value=\"" << i << "\"/>\n"; break;
        case 1: parameters << " type=\"double\" value=\"" << i << ".25\"/>\n"; break;
        case 2: parameters << " type=\"boolean\" value=\"true\"/>\n"; break;
        case 3: parameters << " type=\"string\" value=\"setting number " << i << "\"/>\n"; break;
        default:
            parameters << " type=\"double\" isList=\"true\"><ListValue>";
            for (int v = 0; v < 5; ++v)
                parameters << "<Value value=\"" << v * 0.5 << "\"/>";
            parameters << "</ListValue></Parameter>\n";
        }
    }
    out << Task(parameters.str()) << "</PMML>\n";
    return out.str();
}

// A dictionary of categorical string, categorical integer and continuous
// double fields, with labels, missing values, margins and invalid ranges.
std::string MakeFieldsDocument()
{
    std::ostringstream out;
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PMML version=\"4.4\">\n"
           "  <DataDictionary numberOfFields=\""
        << kCount << "\">\n";
    for (int i = 0; i < kCount; ++i) {
        const int kind = i % 5;
        out << "    <DataField name=\"field_" << i << "\" displayName=\"Field " << i << "\"";
        if (kind < 3) {
            const bool numeric = kind == 2;
            out << " optype=\"categorical\" dataType=\"" << (numeric ? "integer" : "string")
                << "\">\n";
            for (int v = 0; v < 10; ++v)
                out << "      <Value value=\"" << (numeric ? "" : "category_") << v
                    << "\" displayValue=\"Category " << v << "\"/>\n";
            out << "      <Value value=\"" << (numeric ? "99" : "unknown")
                << "\" displayValue=\"not stated\" property=\"missing\"/>\n";
        } else {
            out << " optype=\"continuous\" dataType=\"double\">\n"
                << "      <Interval closure=\"closedClosed\" leftMargin=\"0\" rightMargin=\""
                << 100 + i << "\"/>\n"
                << "      <Extension name=\"invalidRangeLower\" value=\"-999\"/>\n"
                << "      <Extension name=\"invalidRangeUpper\" value=\"-900\"/>\n"
                << "      <Value value=\"-1\" displayValue=\"refused\" property=\"missing\"/>\n";
        }
        out << "    </DataField>\n";
    }
    out << "  </DataDictionary>\n"
        << Task("        <Parameter name=\"target\" value=\"field_0\"/>\n") << "</PMML>\n";
    return out.str();
}

const std::string& ParametersDocument()
{
    static const std::string text = MakeParametersDocument();
    return text;
}

const std::string& FieldsDocument()
{
    static const std::string text = MakeFieldsDocument();
    return text;
}

void XercesParseAlone(benchmark::State& state, const std::string& text)
{
    ZRXPrsUtil::ZRSettingsParser keepsLibraryStarted;
    TimeBareParse(state, text);
}

void ParametersXercesParse(benchmark::State& state)
{
    XercesParseAlone(state, ParametersDocument());
}

void FieldsXercesParse(benchmark::State& state)
{
    XercesParseAlone(state, FieldsDocument());
}

// range(0): the index of the parameter asked for.
void GetParameter(benchmark::State& state)
{
    std::istringstream stream(ParametersDocument());
    ZRXPrsUtil::ZRSettingsParser parser;
    if (!parser.ParseToDOM(stream).IsOK())
        state.SkipWithError("parse failed");
    const int index = static_cast<int>(state.range(0));
    const std::string name = "parameter_" + std::to_string(index);
    for (auto _ : state) {
        int value = -1;
        if (!parser.GetParameter(name.c_str(), value).IsOK() || value != index)
            state.SkipWithError("query failed");
        benchmark::DoNotOptimize(value);
    }
}

void FillVarList(benchmark::State& state)
{
    std::istringstream stream(FieldsDocument());
    ZRXPrsUtil::ZRSettingsParser parser;
    if (!parser.ParseToDOM(stream).IsOK())
        state.SkipWithError("parse failed");
    for (auto _ : state) {
        state.PauseTiming();
        auto list = std::make_unique<ZRMetadata::ZRVarList>();
        state.ResumeTiming();
        if (!parser.FillVarList(*list, false).IsOK() ||
            list->Size() != static_cast<std::size_t>(kCount))
            state.SkipWithError("fill failed");
        state.PauseTiming();
        list.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}

} // namespace

BENCHMARK(ParametersXercesParse)->Unit(benchmark::kMillisecond);
BENCHMARK(GetParameter)->Arg(0)->Arg(kCount / 2)->Arg(kCount - 5)->Unit(benchmark::kMillisecond);
BENCHMARK(FieldsXercesParse)->Unit(benchmark::kMillisecond);
BENCHMARK(FillVarList)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
