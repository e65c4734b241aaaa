// The cost of the UTF-8 conversions on a ten-character name, as the readers
// pay it on every attribute and tag: the direct ToUTF8/ToUTF16 against a
// transcoder of the XML library made for each call.
#include <zrparsexmlr/ZRXPrsUtil.h>

#include "ZRXPlatform.h"

#include <benchmark/benchmark.h>

namespace {

const char* const kName = "customerId";
const XMLCh* const kName16 = u"customerId";

struct Session {
    Session() : held(ZRXPrsUtil::ZRXPlatform::Acquire()) {}
    ~Session()
    {
        if (held)
            ZRXPrsUtil::ZRXPlatform::Release();
    }
    const bool held;
};

void BM_ToUTF8(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ZRXPrsUtil::ToUTF8(kName16));
}

void BM_TranscoderPerCallTo(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ZRXPrsUtil::ZRXTranscoder().TranscodeTo(kName16));
}

void BM_ToUTF16(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ZRXPrsUtil::ToUTF16(kName));
}

void BM_TranscoderPerCallFrom(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ZRXPrsUtil::ZRXTranscoder().TranscodeFrom(kName));
}

void BM_XStrEqualsUTF8Str(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ZRXPrsUtil::XStrEqualsUTF8Str(kName16, kName));
}

BENCHMARK(BM_ToUTF8);
BENCHMARK(BM_TranscoderPerCallTo);
BENCHMARK(BM_ToUTF16);
BENCHMARK(BM_TranscoderPerCallFrom);
BENCHMARK(BM_XStrEqualsUTF8Str);

} // namespace

int main(int argc, char** argv)
{
    Session session;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
