// The progress bar of long jobs on standard error: done, total, rate and time
// left, redrawn in place.
#ifndef ZRX_TOOL_PROGRESS_H
#define ZRX_TOOL_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>

namespace zrx {

// Step costs one clock read; the bar is drawn at most five times a second
// (and once at the end), so that it costs nothing next to the work it counts.
// A disabled bar draws nothing, but Message still prints.
class ProgressBar {
public:
    ProgressBar(std::FILE* out, std::size_t total, bool enabled);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // `done` items of the total are finished.
    void Step(std::size_t done)
    {
        if (!enabled)
            return;
        current = done;
        const Clock::time_point now = Clock::now();
        if (now >= next)
            Draw(now);
    }
    // Prints a line of its own, the bar cleared before and redrawn after.
    void Message(const std::string& line);
    // Draws the final state and ends the bar's line.
    void Finish();

    // The bar's line for `done` of `total` after `seconds`: the text drawn.
    static std::string Line(std::size_t done, std::size_t total, double seconds);

private:
    using Clock = std::chrono::steady_clock;
    void Draw(Clock::time_point now);
    void Clear();

    std::FILE* out;
    std::size_t total;
    std::size_t current = 0;
    bool enabled;
    bool drawn = false;
    std::size_t width = 0; // characters of the last line drawn
    Clock::time_point start;
    Clock::time_point next;
};

} // namespace zrx

#endif
