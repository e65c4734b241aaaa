#include "progress.h"

#include <cmath>
#include <cstdio>

namespace zrx {
namespace {

constexpr auto kRedraw = std::chrono::milliseconds(200);
constexpr std::size_t kCells = 30;

std::string Duration(double seconds)
{
    if (!(seconds >= 0) || seconds > 359999)
        return "--:--";
    const long whole = static_cast<long>(std::lround(seconds));
    char text[32];
    if (whole >= 3600)
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60,
                      whole % 60);
    else
        std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    return text;
}

} // namespace

ProgressBar::ProgressBar(std::FILE* stream, std::size_t count, bool on)
    : out(stream), total(count), enabled(on), start(Clock::now()), next(start)
{}

ProgressBar::~ProgressBar()
{
    if (drawn)
        std::fputc('\n', out);
}

std::string ProgressBar::Line(std::size_t done, std::size_t count, double seconds)
{
    const std::size_t filled = count == 0 ? kCells : done * kCells / count;
    std::string line = "[" + std::string(filled, '#') + std::string(kCells - filled, '.') + "] ";
    line += std::to_string(done) + "/" + std::to_string(count);
    const double rate = seconds > 0 ? done / seconds : 0.0;
    char text[64];
    std::snprintf(text, sizeof text, "  %.1f/s  ", rate);
    line += text;
    line += done >= count ? "done " + Duration(seconds)
                          : "left " + (rate > 0 ? Duration((count - done) / rate) : "--:--");
    return line;
}

void ProgressBar::Draw(Clock::time_point now)
{
    next = now + kRedraw;
    const std::string line =
        Line(current, total, std::chrono::duration<double>(now - start).count());
    std::string text = "\r" + line;
    if (line.size() < width)
        text += std::string(width - line.size(), ' ');
    width = line.size();
    std::fputs(text.c_str(), out);
    std::fflush(out);
    drawn = true;
}

void ProgressBar::Clear()
{
    if (!drawn)
        return;
    std::fputs(("\r" + std::string(width, ' ') + "\r").c_str(), out);
    drawn = false;
    width = 0;
}

void ProgressBar::Message(const std::string& line)
{
    Clear();
    std::fputs((line + "\n").c_str(), out);
    std::fflush(out);
    if (enabled)
        Draw(Clock::now());
}

void ProgressBar::Finish()
{
    if (!enabled)
        return;
    Draw(Clock::now());
    std::fputc('\n', out);
    drawn = false;
    enabled = false;
}

} // namespace zrx
