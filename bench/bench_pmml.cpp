// Speed of the PMML reader on generated documents of 1,000, 10,000 and
// 100,000 DataFields: the bare XML parse of the bytes, ParseToDOM, and
// FillVarList on the parsed document. FillVarList should take no more than
// half of the bare parse, and grow linearly with the number of fields; with
// a list of wanted fields that names them all it should take at most 1.5
// times as long as without a list.
//
// DOMWalk makes the DOM accesses of FillVarList and nothing else. Its time
// per field grows from 1,000 to 10,000 fields as FillVarList's does: the XML
// library's DOM of one field of this document takes about 16 KB (some 250
// cache lines, each read once per walk), so the DOM of 1,000 fields (16 MB)
// stays in the processor's 32 MB last-level cache from one iteration to the
// next and that of 10,000 fields (160 MB) does not. Under callgrind's cache
// model (32 MB last level), per field: FillVarList 25,200 instructions at
// both sizes, 0.4 last-level misses at 1,000 fields and 266 at 10,000;
// DOMWalk 8,000 instructions, 0 and 251 misses. The list and the texts
// FillVarList builds add 15 misses per field; the rest is the DOM's.
#include <zrparsexmlr/ZRPMMLParser.h>

#include "BenchBareParse.h"
#include "ZRXPrsUtilInternal.h"

#include <benchmark/benchmark.h>
#include <xercesc/dom/DOM.hpp>
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
std::string MakeDocument(int fields)
{
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

// Opens the dictionary the reader found.
class Parser : public ZRXPrsUtil::ZRPMMLParser {
public:
    const xercesc::DOMElement& Dictionary() const { return *dataDictionary; }
};

const std::string& Document(int fields)
{
    static std::map<int, std::string> documents;
    auto found = documents.find(fields);
    if (found == documents.end())
        found = documents.emplace(fields, MakeDocument(fields)).first;
    return found->second;
}

void XercesParseAlone(benchmark::State& state)
{
    ZRXPrsUtil::ZRPMMLParser keepsLibraryStarted;
    TimeBareParse(state, Document(static_cast<int>(state.range(0))));
}

void ParseToDOM(benchmark::State& state)
{
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
void TimeFill(benchmark::State& state, int fields, const std::vector<std::string>& wanted)
{
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

void FillVarList(benchmark::State& state)
{
    TimeFill(state, static_cast<int>(state.range(0)), {});
}

// Every field named in the list of wanted fields, last name first: the
// lookup of each field's name in the list is the only work beyond
// FillVarList/N. Goal: FillVarListWanted/20000 at most 1.5 x FillVarList/20000.
void FillVarListWanted(benchmark::State& state)
{
    const int fields = static_cast<int>(state.range(0));
    std::vector<std::string> wanted;
    for (int i = fields - 1; i >= 0; --i)
        wanted.push_back("field_" + std::to_string(i));
    TimeFill(state, fields, wanted);
}

// The DOM accesses of FillVarList without the variable list: the same
// DataField elements, their four attributes, every child, and each Value's
// attributes, with each text read to its end. What FillVarList takes beyond
// this is its own: converting texts, gathering a field, adding it to the list.
std::size_t WalkDictionary(const xercesc::DOMElement& dictionary)
{
    auto touch = [](const XMLCh* text) {
        std::size_t length = 0;
        if (text)
            while (text[length])
                ++length;
        return length;
    };
    std::size_t characters = 0;
    for (const xercesc::DOMElement* field = ZRXPrsUtil::GetFirstChildElmt(dictionary, "DataField");
         field; field = ZRXPrsUtil::GetNextSiblingElmt(*field, "DataField")) {
        for (const char* name : {"name", "displayName", "dataType", "optype"})
            characters += touch(ZRXPrsUtil::GetAttribute(*field, name));
        for (const xercesc::DOMNode* child = field->getFirstChild(); child;
             child = child->getNextSibling()) {
            const xercesc::DOMElement* element = ZRXPrsUtil::AsElement(*child, nullptr);
            if (!element || !element->hasAttributes())
                continue;
            const xercesc::DOMNamedNodeMap* attributes = element->getAttributes();
            for (XMLSize_t i = 0, count = attributes->getLength(); i < count; ++i) {
                const auto& attribute = static_cast<const xercesc::DOMAttr&>(*attributes->item(i));
                characters +=
                    touch(attribute.getName()) + touch(ZRXPrsUtil::AttributeValue(attribute));
            }
        }
    }
    return characters;
}

void DOMWalk(benchmark::State& state)
{
    const int fields = static_cast<int>(state.range(0));
    std::istringstream stream(Document(fields));
    Parser parser;
    if (!parser.ParseToDOM(stream).IsOK())
        state.SkipWithError("parse failed");
    const xercesc::DOMElement& dictionary = parser.Dictionary();
    benchmark::DoNotOptimize(WalkDictionary(dictionary));
    for (auto _ : state)
        benchmark::DoNotOptimize(WalkDictionary(dictionary));
    state.SetItemsProcessed(state.iterations() * fields);
}

} // namespace

// The largest size runs a single iteration per repetition, so each figure is
// the median of five repetitions.
#define ZRX_PMML_SIZES(bench)                                                                      \
    BENCHMARK(bench)                                                                               \
        ->Arg(1000)                                                                                \
        ->Arg(10000)                                                                               \
        ->Arg(100000)                                                                              \
        ->Unit(benchmark::kMillisecond)                                                            \
        ->Repetitions(5)                                                                           \
        ->ReportAggregatesOnly(true)
ZRX_PMML_SIZES(XercesParseAlone);
ZRX_PMML_SIZES(ParseToDOM);
ZRX_PMML_SIZES(FillVarList);
BENCHMARK(FillVarList)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(FillVarListWanted)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
ZRX_PMML_SIZES(DOMWalk);

BENCHMARK_MAIN();
