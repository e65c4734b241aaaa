// What the progress bar of zrx combine costs: one Step per model (a clock
// read, and at most five redraws a second), and one redraw. Against the time
// the combiner takes per model (see progress-cost.sh) this gives the bar's
// share of a combine.
#include "progress.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

namespace {

// The per-model call of an enabled bar, redraws included.
void BM_ProgressStep(benchmark::State& state)
{
    std::FILE* sink = std::fopen("/dev/null", "w");
    if (sink == nullptr) {
        state.SkipWithError("can't open /dev/null");
        return;
    }
    {
        zrx::ProgressBar bar(sink, std::size_t(1) << 40, true);
        std::size_t done = 0;
        for (auto _ : state)
            bar.Step(++done);
        bar.Finish();
    }
    std::fclose(sink);
}
BENCHMARK(BM_ProgressStep);

// One redraw: the line's text and its write.
void BM_ProgressRedraw(benchmark::State& state)
{
    std::FILE* sink = std::fopen("/dev/null", "w");
    if (sink == nullptr) {
        state.SkipWithError("can't open /dev/null");
        return;
    }
    std::size_t done = 0;
    for (auto _ : state) {
        const std::string line = "\r" + zrx::ProgressBar::Line(++done % 5000, 5000, 12.5);
        std::fputs(line.c_str(), sink);
        std::fflush(sink);
    }
    std::fclose(sink);
}
BENCHMARK(BM_ProgressRedraw);

} // namespace

BENCHMARK_MAIN();
