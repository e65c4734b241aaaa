// The number rules of the library: integers in the range of int, XML Schema
// doubles with NaN as the missing value and the infinities refused, and
// white-space separated lists of doubles.
#include "ZRXPrsUtilInternal.h"

#include <zrcommonr/ZRMV.h>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLBigInteger.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLStringTokenizer.hpp>

#include <cfloat>
#include <charconv>
#include <climits>
#include <cmath>
#include <string>

namespace ZRXPrsUtil {

namespace {

bool IsXMLSpace(XMLCh c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Whether `number`, a text of the form checked by ReadDouble that
// from_chars found out of range, is too large for a double rather than too
// small: the power of ten of its leading non-zero digit is positive.
bool Overflows(const char* number, const char* end)
{
    const char* c = number;
    if (*c == '-' || *c == '+')
        ++c;
    long long power = -1;
    bool leading = true;
    for (; c < end && IsDigit(*c); ++c) {
        if (*c != '0' || !leading) {
            leading = false;
            ++power;
        }
    }
    if (leading && c < end && *c == '.') {
        for (++c; c < end && *c == '0'; ++c)
            --power;
    }
    while (c < end && *c != 'e' && *c != 'E')
        ++c;
    if (c < end) {
        ++c;
        const bool negative = *c == '-';
        if (*c == '-' || *c == '+')
            ++c;
        long long exponent = 0;
        for (; c < end && exponent < 1000000000; ++c)
            exponent = exponent * 10 + (*c - '0');
        power += negative ? -exponent : exponent;
    }
    return power > 0;
}

} // namespace

// The text is read without the C library's locale: a host process may have
// set one whose decimal separator is not a point (a comma, or the two bytes
// of U+066B), which strtod, and the XML library's own double on top of it,
// would expect in place of the point. The forms taken are exactly those of
// the XML library's double: white space around, an optional sign, digits
// with at most one point and at least one digit, and an optional exponent;
// "NaN", "INF" and "-INF" as whole words. The value is the nearest double;
// a number that rounds to a subnormal double is 0, and a smaller one a zero
// of its sign, as the XML library reads them. Two differences remain where
// the library's reading is an accident of the C library's range report: a
// number that rounds up to the least normal double is that double (the
// library refuses it as an infinity), and a subnormal number written out
// exactly, in some 750 digits, is 0 too (the library keeps it).
bool ParseDouble(const XMLCh* text, double& value)
{
    if (!text)
        return false;
    const XMLCh* begin = text;
    while (IsXMLSpace(*begin))
        ++begin;
    const XMLCh* end = begin + xercesc::XMLString::stringLen(begin);
    while (end > begin && IsXMLSpace(end[-1]))
        --end;
    const std::size_t length = static_cast<std::size_t>(end - begin);
    if (length == 3 && begin[0] == u'N' && begin[1] == u'a' && begin[2] == u'N') {
        value = ZRMV::gMissingValue;
        return true;
    }

    // The ASCII form, on the stack for all but overlong digit strings.
    char shortForm[64];
    std::string longForm;
    char* number = shortForm;
    if (length >= sizeof shortForm) {
        longForm.resize(length);
        number = &longForm[0];
    }
    for (std::size_t i = 0; i < length; ++i) {
        if (begin[i] >= 0x80)
            return false;
        number[i] = static_cast<char>(begin[i]);
    }
    const char* const last = number + length;

    const bool negative = *number == '-';
    if (length == 2 && (negative || *number == '+') && number[1] == '.') {
        // A sign and a lone point: the XML library reads it as a zero.
        value = negative ? -0.0 : 0.0;
        return true;
    }

    // [+-]? (digits ("." digits?)? | "." digits) ([eE] [+-]? digits)?
    const char* c = number;
    if (c < last && (*c == '+' || *c == '-'))
        ++c;
    std::size_t digits = 0;
    for (; c < last && IsDigit(*c); ++c)
        ++digits;
    if (c < last && *c == '.')
        for (++c; c < last && IsDigit(*c); ++c)
            ++digits;
    if (digits == 0)
        return false;
    if (c < last && (*c == 'e' || *c == 'E')) {
        ++c;
        if (c < last && (*c == '+' || *c == '-'))
            ++c;
        std::size_t exponentDigits = 0;
        for (; c < last && IsDigit(*c); ++c)
            ++exponentDigits;
        if (exponentDigits == 0)
            return false;
    }
    if (c != last)
        return false;

    // from_chars takes no plus sign.
    const char* first = *number == '+' ? number + 1 : number;
    double parsed = 0;
    const std::from_chars_result result = std::from_chars(first, last, parsed);
    if (result.ptr != last)
        return false;
    if (result.ec == std::errc::result_out_of_range) {
        // Too large is an infinity and refused; too small is a zero.
        if (Overflows(number, last))
            return false;
        parsed = negative ? -0.0 : 0.0;
    } else if (result.ec != std::errc() || std::isinf(parsed)) {
        return false;
    } else if (parsed != 0 && std::fabs(parsed) < DBL_MIN) {
        // A subnormal number is a positive zero in the XML library.
        parsed = 0.0;
    }
    value = parsed;
    return true;
}
bool ParseInteger(const XMLCh* text, int& value)
{
    try {
        if (!text)
            return false;
        const xercesc::XMLBigInteger number(text, xercesc::XMLPlatformUtils::fgMemoryManager);
        // intValue() wraps silently beyond the range of int, so the value is
        // taken here from the digits of the text, which the constructor has
        // checked: white space, an optional sign, decimal digits.
        if (number.getTotalDigit() > 10)
            return false;
        long long magnitude = 0;
        for (const XMLCh* c = number.getRawData(); *c; ++c)
            if (*c >= u'0' && *c <= u'9')
                magnitude = magnitude * 10 + (*c - u'0');
        const long long signedValue = number.getSign() < 0 ? -magnitude : magnitude;
        if (signedValue < INT_MIN || signedValue > INT_MAX)
            return false;
        value = static_cast<int>(signedValue);
        return true;
    } catch (...) {
        return false;
    }
}

bool ParseDoublesList(const XMLCh* text, std::vector<double>& values)
{
    values.clear();
    if (!text)
        return true;
    xercesc::XMLStringTokenizer tokens(text, xercesc::XMLPlatformUtils::fgMemoryManager);
    while (tokens.hasMoreTokens()) {
        double number = 0;
        if (!ParseDouble(tokens.nextToken(), number)) {
            values.clear();
            return false;
        }
        values.push_back(number);
    }
    return true;
}

bool AssembleDoublesList(const xercesc::DOMElement& element, std::vector<double>& values)
{
    const xercesc::DOMNodeList* children = element.getChildNodes();
    const XMLSize_t count = children ? children->getLength() : 0;
    if (count == 0) {
        values.clear();
        return true;
    }
    const xercesc::DOMNode* child = children->item(0);
    if (count > 1 || child->getNodeType() != xercesc::DOMNode::TEXT_NODE)
        return false;
    return ParseDoublesList(child->getNodeValue(), values);
}

} // namespace ZRXPrsUtil
