#include <zrcommonr/ZRFormat.h>
#include <zrcommonr/ZRMV.h>

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace ZRMV {

const double gMissingValue = -1.7976931348623155e308;

bool IsMissing(double value) { return value == gMissingValue; }

} // namespace ZRMV

namespace ZRXML_NAMESPACE {

namespace {

// The shortest text among the "%.Ng" forms (N from 1 to 17) that strtod
// reads back to the same double; 17 significant digits always round-trip.
// The fewest digits can come in exponent form ("5e+02") where more digits are
// shorter in positional form ("500"), so the search goes on past the first
// hit until a positional form is reached; of two forms of one length the
// positional one wins.
std::string Shortest(double value)
{
    char text[40];
    std::string best;
    for (int precision = 1; precision <= 17; ++precision) {
        std::snprintf(text, sizeof text, "%.*g", precision, value);
        if (std::strtod(text, nullptr) != value)
            continue;
        if (best.empty() || std::strlen(text) <= best.size())
            best = text;
        if (std::strchr(text, 'e') == nullptr)
            break;
    }
    return best;
}

std::string Fixed(double value)
{
    // Positional notation with the fewest decimals that round-trip.
    char text[400];
    for (int decimals = 0; decimals <= 340; ++decimals) {
        std::snprintf(text, sizeof text, "%.*f", decimals, value);
        if (std::strtod(text, nullptr) == value)
            break;
    }
    return text;
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
