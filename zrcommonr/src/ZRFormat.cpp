#include <zrcommonr/ZRFormat.h>
#include <zrcommonr/ZRMV.h>

#include <charconv>
#include <cmath>
#include <cstring>

namespace ZRMV {

const double gMissingValue = -1.7976931348623155e308;

bool IsMissing(double value)
{
    return value == gMissingValue;
}

} // namespace ZRMV

namespace ZRXML_NAMESPACE {

namespace {

// The conversions below are those of the C++ library, which keep to the
// "C" locale's forms whatever locale the host process has set: snprintf
// and strtod would write and expect its decimal separator ("0,5" in a
// German locale).

// The text of `value` in the "%.*g" form with `precision` significant
// digits, and whether it reads back to `value`.
bool General(double value, int precision, char* text, std::size_t size, std::size_t& length)
{
    const std::to_chars_result written =
        std::to_chars(text, text + size, value, std::chars_format::general, precision);
    length = static_cast<std::size_t>(written.ptr - text);
    double back = 0;
    const std::from_chars_result read = std::from_chars(text, written.ptr, back);
    return read.ec == std::errc() && back == value;
}

// The shortest text among the "%.Ng" forms (N from 1 to 17) that reads back
// to the same double; 17 significant digits always round-trip. The fewest
// digits can come in exponent form ("5e+02") where more digits are shorter
// in positional form ("500"), so the search goes on past the first hit until
// a positional form is reached; of two forms of one length the positional
// one wins.
std::string Shortest(double value)
{
    char text[40];
    std::string best;
    for (int precision = 1; precision <= 17; ++precision) {
        std::size_t length = 0;
        if (!General(value, precision, text, sizeof text, length))
            continue;
        if (best.empty() || length <= best.size())
            best.assign(text, length);
        if (std::memchr(text, 'e', length) == nullptr)
            break;
    }
    return best;
}

std::string Fixed(double value)
{
    // Positional notation with the fewest decimals that round-trip; the
    // largest double has 309 digits before the point, the least one 1074
    // decimals after it.
    char text[1100];
    std::size_t length = 0;
    for (int decimals = 0; decimals <= 340; ++decimals) {
        const std::to_chars_result written =
            std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals);
        length = static_cast<std::size_t>(written.ptr - text);
        double back = 0;
        const std::from_chars_result read = std::from_chars(text, written.ptr, back);
        if (read.ec == std::errc() && back == value)
            break;
    }
    return std::string(text, length);
}

} // namespace

std::string Format(double value, bool fixed, char* buffer)
{
    std::string text;
    if (std::isnan(value))
        text = "NaN";
    else if (std::isinf(value))
        text = value > 0 ? "INF" : "-INF";
    else
        text = fixed ? Fixed(value) : Shortest(value);
    if (buffer != nullptr) {
        // The caller's buffer holds at least 32 bytes; longer fixed texts are cut.
        std::strncpy(buffer, text.c_str(), 31);
        buffer[31] = '\0';
    }
    return text;
}

} // namespace ZRXML_NAMESPACE
