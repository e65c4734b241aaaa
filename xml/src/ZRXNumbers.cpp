// The number rules of the library: integers in the range of int, XML Schema
// doubles with NaN as the missing value and the infinities refused, and
// white-space separated lists of doubles.
#include "ZRXPrsUtilInternal.h"

#include <zrcommonr/ZRMV.h>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

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

bool ParseDoubleSpan(const XMLCh* begin, const XMLCh* end, double& value);

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
    return text != nullptr &&
           ParseDoubleSpan(text, text + xercesc::XMLString::stringLen(text), value);
}

namespace {

// ParseDouble of the text from `begin` to `end`.
bool ParseDoubleSpan(const XMLCh* begin, const XMLCh* end, double& value)
{
    while (begin < end && IsXMLSpace(*begin))
        ++begin;
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

} // namespace

bool ParseInteger(const XMLCh* text, int& value)
{
    // The XML library's integer form (as its XMLBigInteger reads it, whose
    // constructor loses memory when an allocation in it fails): white space
    // around, an optional sign, decimal digits. The value is taken from the
    // digits here, as the library's own conversion to int wraps silently.
    if (!text)
        return false;
    const XMLCh* begin = text;
    const XMLCh* end = text + xercesc::XMLString::stringLen(text);
    while (begin < end && IsXMLSpace(*begin))
        ++begin;
    while (end > begin && IsXMLSpace(end[-1]))
        --end;
    if (begin == end)
        return false;
    const bool negative = *begin == u'-';
    if ((negative || *begin == u'+') && ++begin == end)
        return false;
    while (begin < end && *begin == u'0')
        ++begin;
    if (end - begin > 10)
        return false;
    long long magnitude = 0;
    for (; begin < end; ++begin) {
        if (*begin < u'0' || *begin > u'9')
            return false;
        magnitude = magnitude * 10 + (*begin - u'0');
    }
    const long long signedValue = negative ? -magnitude : magnitude;
    if (signedValue < INT_MIN || signedValue > INT_MAX)
        return false;
    value = static_cast<int>(signedValue);
    return true;
}

bool ParseDoublesList(const XMLCh* text, std::vector<double>& values)
{
    values.clear();
    if (!text)
        return true;
    // The tokens are read in place, split at the white space of XML, as the
    // XML library's tokenizer splits them; that tokenizer leaks its copy of
    // the text when an allocation fails in its constructor.
    for (const XMLCh* token = text; *token != 0;) {
        if (IsXMLSpace(*token)) {
            ++token;
            continue;
        }
        const XMLCh* end = token;
        while (*end != 0 && !IsXMLSpace(*end))
            ++end;
        double number = 0;
        if (!ParseDoubleSpan(token, end, number)) {
            values.clear();
            return false;
        }
        values.push_back(number);
        token = end;
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
