// Speed of the encoding conversions beside the bare ICU call that each one
// wraps, on an already-open converter, for the same text: texts of 64 bytes,
// 4 KiB and 1 MiB of UTF-8, in ASCII, Western European and CJK.
//
// Arguments of every benchmark: {size index, script index}; sizes 64, 4096,
// 1048576 bytes; scripts 0 ASCII (windows-1252), 1 Western (windows-1252),
// 2 CJK (GBK). The code page of the script is that of the converter.
#include <zrparsexmlr/ZRMem.h>

#include "ZREncodingInternal.h"

#include <benchmark/benchmark.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <clocale>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

using namespace ZRMem;

namespace {

const size_t kSizes[] = {64, 4096, 1048576};
const char* const kScriptNames[] = {"ascii", "western", "cjk"};
const char* const kCodePages[] = {"windows-1252", "windows-1252", "GBK"};
const char* const kSamples[] = {
    "The quick brown fox jumps over the lazy dog; 0123456789. ",
    "D\xC3\xA9j\xC3\xA0 vu: na\xC3\xAFve fa\xC3\xA7"
    "ade, \xC3\xBC"
    "ber Stra\xC3\x9F"
    "e, se\xC3\xB1or. ",
    "\xE4\xB8\xAD\xE6\x96\x87\xE6\xB5\x8B\xE8\xAF\x95\xE6\x96\x87\xE6\x9C\xAC\xEF\xBC\x8C"
    "\xE6\x95\xB0\xE6\x8D\xAE\xE6\xA8\xA1\xE5\x9E\x8B\xE3\x80\x82",
};

// One text in every encoding the benchmarks read, and a converter for its
// code page.
struct Text {
    std::string u8;
    U16String u16;
    std::string cp;
    UConverter* cnv = nullptr;
};

const Text& TextFor(size_t sizeIndex, size_t scriptIndex)
{
    static std::map<std::pair<size_t, size_t>, Text> texts;
    Text& t = texts[{sizeIndex, scriptIndex}];
    if (!t.cnv) {
        const std::string sample = kSamples[scriptIndex];
        while (t.u8.size() + sample.size() <= kSizes[sizeIndex])
            t.u8 += sample;
        // Top up with whole ASCII characters to the exact size.
        t.u8.append(kSizes[sizeIndex] - t.u8.size(), 'x');
        t.cnv = static_cast<UConverter*>(VORKMBConverterNew_C(kCodePages[scriptIndex]));
        if (VORKMBU8ToU16(t.u16, t.u8) != 0 || VORKMBU16ToCodePage(t.cnv, t.cp, t.u16) != 0)
            std::fprintf(stderr, "bench_encoding: the sample text does not convert cleanly\n");
    }
    return t;
}

void Label(benchmark::State& state, const Text& t)
{
    state.SetLabel(std::string(kScriptNames[state.range(1)]) + "/" + std::to_string(t.u8.size()) +
                   "B");
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(t.u8.size()));
}

void Args(benchmark::internal::Benchmark* b)
{
    for (int size = 0; size < 3; ++size)
        for (int script = 0; script < 3; ++script)
            b->Args({size, script});
}

// UTF-8 to UTF-16 into a fixed buffer.
void BM_VORKMB8to16(benchmark::State& state)
{
    const Text& t =
        TextFor(static_cast<size_t>(state.range(0)), static_cast<size_t>(state.range(1)));
    std::vector<unsigned short> out(t.u8.size() + 1);
    for (auto _ : state) {
        int code = 0;
        benchmark::DoNotOptimize(VORKMB8to16(out.data(), static_cast<int>(out.size()), t.u8.data(),
                                             static_cast<int>(t.u8.size()), &code));
    }
    Label(state, t);
}

void BM_ICU_u_strFromUTF8(benchmark::State& state)
{
    const Text& t =
        TextFor(static_cast<size_t>(state.range(0)), static_cast<size_t>(state.range(1)));
    std::vector<UChar> out(t.u8.size() + 1);
    for (auto _ : state) {
        UErrorCode err = U_ZERO_ERROR;
        int32_t length = 0;
        u_strFromUTF8(out.data(), static_cast<int32_t>(out.size()), &length, t.u8.data(),
                      static_cast<int32_t>(t.u8.size()), &err);
        benchmark::DoNotOptimize(length);
    }
    Label(state, t);
}

// UTF-8 to UTF-16 into a string.
void BM_VORKMBU8ToU16(benchmark::State& state)
{
    const Text& t =
        TextFor(static_cast<size_t>(state.range(0)), static_cast<size_t>(state.range(1)));
    U16String out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(VORKMBU8ToU16(out, t.u8));
        benchmark::DoNotOptimize(out.data());
    }
    Label(state, t);
}

// UTF-16 to the code page into a string, with the caller's converter.
void BM_VORKMBU16ToCodePage(benchmark::State& state)
{
    const Text& t =
        TextFor(static_cast<size_t>(state.range(0)), static_cast<size_t>(state.range(1)));
    std::string out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(VORKMBU16ToCodePage(t.cnv, out, t.u16));
        benchmark::DoNotOptimize(out.data());
    }
    Label(state, t);
}

// The same through a private clone of the default converter (GBK here), as a
// caller without a converter of its own gets it; CJK text only.
void BM_VORKMBU16ToCodePage_clone(benchmark::State& state)
{
    const Text& t = TextFor(static_cast<size_t>(state.range(0)), 2);
    std::string out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(VORKMBU16ToCodePage(nullptr, out, t.u16));
        benchmark::DoNotOptimize(out.data());
    }
    Label(state, t);
}

void BM_ICU_ucnv_fromUChars(benchmark::State& state)
{
    const Text& t =
        TextFor(static_cast<size_t>(state.range(0)), static_cast<size_t>(state.range(1)));
    std::vector<char> out(4 * t.u16.size() + 1);
    for (auto _ : state) {
        UErrorCode err = U_ZERO_ERROR;
        benchmark::DoNotOptimize(ucnv_fromUChars(t.cnv, out.data(),
                                                 static_cast<int32_t>(out.size()),
                                                 reinterpret_cast<const UChar*>(t.u16.data()),
                                                 static_cast<int32_t>(t.u16.size()), &err));
    }
    Label(state, t);
}

// Code page to UTF-8 into a string, with the caller's converter.
void BM_VORKMBCodePageToU8(benchmark::State& state)
{
    const Text& t =
        TextFor(static_cast<size_t>(state.range(0)), static_cast<size_t>(state.range(1)));
    std::string out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(VORKMBCodePageToU8(t.cnv, out, t.cp));
        benchmark::DoNotOptimize(out.data());
    }
    Label(state, t);
}

void BM_ICU_ucnv_toAlgorithmic(benchmark::State& state)
{
    const Text& t =
        TextFor(static_cast<size_t>(state.range(0)), static_cast<size_t>(state.range(1)));
    std::vector<char> out(3 * t.cp.size() + 1);
    for (auto _ : state) {
        UErrorCode err = U_ZERO_ERROR;
        ucnv_resetToUnicode(t.cnv);
        benchmark::DoNotOptimize(ucnv_toAlgorithmic(UCNV_UTF8, t.cnv, out.data(),
                                                    static_cast<int32_t>(out.size()), t.cp.data(),
                                                    static_cast<int32_t>(t.cp.size()), &err));
    }
    Label(state, t);
}

} // namespace

BENCHMARK(BM_VORKMB8to16)->Apply(Args);
BENCHMARK(BM_ICU_u_strFromUTF8)->Apply(Args);
BENCHMARK(BM_VORKMBU8ToU16)->Apply(Args);
BENCHMARK(BM_VORKMBU16ToCodePage)->Apply(Args);
BENCHMARK(BM_ICU_ucnv_fromUChars)->Apply(Args);
BENCHMARK(BM_VORKMBCodePageToU8)->Apply(Args);
BENCHMARK(BM_ICU_ucnv_toAlgorithmic)->Apply(Args);
BENCHMARK(BM_VORKMBU16ToCodePage_clone)->Args({0, 2})->Args({1, 2})->Args({2, 2});

int main(int argc, char** argv)
{
    // The default converter follows the character locale: GBK, as the CJK
    // script's converter.
    std::setlocale(LC_ALL, "zh_CN.GBK");
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
