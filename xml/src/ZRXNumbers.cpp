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
