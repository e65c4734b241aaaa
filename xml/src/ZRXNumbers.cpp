// The number rules of the library: integers in the range of int, XML Schema
// doubles with NaN as the missing value and the infinities refused, and
// white-space separated lists of doubles.
#include "ZRXPrsUtilInternal.h"

#include <zrcommonr/ZRMV.h>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLBigInteger.hpp>
#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLStringTokenizer.hpp>

#include <charconv>
#include <climits>

namespace ZRXPrsUtil {

namespace {

// Gives ParseDouble access to the parsed value and the literal type, which
// the XML library keeps as protected members.
class ZRXMLDouble : public xercesc::XMLDouble {
public:
    ZRXMLDouble(const XMLCh* text, xercesc::MemoryManager* manager)
        : xercesc::XMLDouble(text, manager)
    {
    }
    double Value() const { return fValue; }
    LiteralType Type() const { return fType; }
};

// The plain decimal form that most numbers of a document take: an optional
// minus, digits, and a fraction of one or more digits, with nothing around
// them. The XML library accepts every such text as a normal double, and its
// value is the correctly rounded one, which from_chars gives as well without
// transcoding the text first. Anything else (exponents, signs, white space,
// NaN, the infinities, overlong digit strings) is left to the library.
bool ParsePlainDecimal(const XMLCh* text, double& value)
{
    const std::size_t kLongest = 40;
    char digits[kLongest];
    std::size_t length = 0;
    const XMLCh* c = text;
    if (*c == u'-')
        digits[length++] = static_cast<char>(*c++);
    std::size_t whole = 0;
    for (; *c >= u'0' && *c <= u'9' && length < kLongest; ++c, ++whole)
        digits[length++] = static_cast<char>(*c);
    if (whole == 0)
        return false;
    if (*c == u'.' && length < kLongest) {
        digits[length++] = '.';
        ++c;
        std::size_t fraction = 0;
        for (; *c >= u'0' && *c <= u'9' && length < kLongest; ++c, ++fraction)
            digits[length++] = static_cast<char>(*c);
        if (fraction == 0)
            return false;
    }
    if (*c != 0)
        return false;
    double parsed = 0;
    const std::from_chars_result result = std::from_chars(digits, digits + length, parsed);
    if (result.ec != std::errc() || result.ptr != digits + length)
        return false;
    value = parsed;
    return true;
}

} // namespace

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

bool ParseDouble(const XMLCh* text, double& value)
{
    if (!text)
        return false;
    if (ParsePlainDecimal(text, value))
        return true;
    try {
        const ZRXMLDouble number(text, xercesc::XMLPlatformUtils::fgMemoryManager);
        switch (number.Type()) {
        case xercesc::XMLAbstractDoubleFloat::Normal:
            value = number.Value();
            return true;
        case xercesc::XMLAbstractDoubleFloat::NaN:
            value = ZRMV::gMissingValue;
            return true;
        default:
            return false;
        }
    } catch (const xercesc::NumberFormatException&) {
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
