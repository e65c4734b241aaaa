// Attribute readers, tag tests, navigation, the vendor Extension finders,
// name lists and the building helpers.
#include "ZRXPrsUtilInternal.h"

#include <zrcommonr/ZRFormat.h>

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/util/XMLString.hpp>

namespace ZRXPrsUtil {

const char* const VendorExtenderId = "zrparsexmlr.example.org";

namespace {

const char* const kExtensionTag = "Extension";

const xercesc::DOMElement* FirstElementFrom(const xercesc::DOMNode* node, const char* tag)
{
    for (; node; node = node->getNextSibling())
        if (const xercesc::DOMElement* element = AsElement(*node, tag))
            return element;
    return nullptr;
}

const xercesc::DOMElement* FirstExtensionFrom(const xercesc::DOMNode* node, const char* name)
{
    for (const xercesc::DOMElement* element = FirstElementFrom(node, kExtensionTag); element;
         element = FirstElementFrom(element->getNextSibling(), kExtensionTag))
        if (IsVendorExtension(*element, name))
            return element;
    return nullptr;
}

} // namespace

const XMLCh* AttributeValue(const xercesc::DOMAttr& attribute)
{
    // A parsed attribute holds its value as a single text child, which is
    // read here directly: getValue() finds the same text through a checked
    // cast that costs more than the rest of the lookup. Other forms (an
    // empty value, several children) go through getValue().
    const xercesc::DOMNode* text = attribute.getFirstChild();
    if (text && text->getNodeType() == xercesc::DOMNode::TEXT_NODE && !text->getNextSibling())
        return text->getNodeValue();
    return attribute.getValue();
}

const XMLCh* GetAttribute(const xercesc::DOMElement& element, const char* name)
{
    const xercesc::DOMAttr* attribute = element.getAttributeNode(ZRXName(name).c_str());
    return attribute ? AttributeValue(*attribute) : nullptr;
}

const XMLCh* GetAttribute(const xercesc::DOMNode& node, const char* name)
{
    const xercesc::DOMElement* element = AsElement(node, nullptr);
    return element ? GetAttribute(*element, name) : nullptr;
}

int GetIntAttribute(const xercesc::DOMElement& element, const char* name, int signRule, int& value)
{
    const XMLCh* text = GetAttribute(element, name);
    if (!text)
        return -1;
    int parsed = 0;
    if (!ParseInteger(text, parsed))
        return 1;
    value = parsed;
    if ((signRule == 0 && parsed < 0) || (signRule > 0 && parsed <= 0))
        return 1;
    return 0;
}

int GetDoubleAttribute(const xercesc::DOMElement& element, const char* name, double& value)
{
    const XMLCh* text = GetAttribute(element, name);
    if (!text)
        return -1;
    return ParseDouble(text, value) ? 0 : 1;
}

bool TagNameEquals(const xercesc::DOMElement& element, const char* name)
{
    return XStrEqualsUTF8Str(element.getTagName(), name);
}

const xercesc::DOMElement* AsElement(const xercesc::DOMNode& node, const char* tag)
{
    if (node.getNodeType() != xercesc::DOMNode::ELEMENT_NODE)
        return nullptr;
    const xercesc::DOMElement& element = static_cast<const xercesc::DOMElement&>(node);
    return !tag || TagNameEquals(element, tag) ? &element : nullptr;
}

const xercesc::DOMElement* GetNextSiblingElmt(const xercesc::DOMNode& node, const char* tag)
{
    return FirstElementFrom(node.getNextSibling(), tag);
}

const xercesc::DOMElement* GetFirstChildElmt(const xercesc::DOMNode& node, const char* tag)
{
    return FirstElementFrom(node.getFirstChild(), tag);
}

const xercesc::DOMElement* GetFirstChildElmt(const xercesc::DOMNode& node,
                                             const NameListEntry* names, std::size_t& index)
{
    index = 0;
    if (!names)
        return nullptr;
    for (std::size_t i = 0; names[i].second; ++i) {
        if (const xercesc::DOMElement* element = GetFirstChildElmt(node, names[i].second)) {
            index = i;
            return element;
        }
    }
    return nullptr;
}

bool IsVendorExtension(const xercesc::DOMElement& element, const char* name)
{
    const XMLCh* extender = GetAttribute(element, "extender");
    if (!extender || !XStrEqualsUTF8Str(extender, VendorExtenderId))
        return false;
    if (!name)
        return true;
    const XMLCh* extensionName = GetAttribute(element, "name");
    return extensionName && XStrEqualsUTF8Str(extensionName, name);
}

const xercesc::DOMElement* GetNextSiblingExtension(const xercesc::DOMNode& node, const char* name)
{
    return FirstExtensionFrom(node.getNextSibling(), name);
}

const xercesc::DOMElement* GetFirstChildExtension(const xercesc::DOMNode& node, const char* name)
{
    return FirstExtensionFrom(node.getFirstChild(), name);
}

int FindXStrInList(const XMLCh* text, const NameListEntry* names)
{
    if (!names)
        return -1;
    for (int i = 0; names[i].second; ++i)
        if (XStrEqualsUTF8Str(text, names[i].second))
            return i;
    return -1;
}

int FindXStrInList(const XMLCh* text, const std::vector<std::string>& names)
{
    for (std::size_t i = 0; i < names.size(); ++i)
        if (XStrEqualsUTF8Str(text, names[i].c_str()))
            return static_cast<int>(i);
    return -1;
}

xercesc::DOMElement* CreateElement(xercesc::DOMDocument& document, const char* tag)
{
    try {
        return document.createElement(ZRXName(tag).c_str());
    } catch (const xercesc::DOMException&) {
        return nullptr;
    }
}

xercesc::DOMElement* CreateExtension(xercesc::DOMDocument& document, const char* name)
{
    xercesc::DOMElement* element = CreateElement(document, kExtensionTag);
    if (element && !(SetAttribute(*element, "extender", VendorExtenderId) &&
                     SetAttribute(*element, "name", name))) {
        element->release();
        element = nullptr;
    }
    return element;
}

bool ReplaceElement(xercesc::DOMElement& parent, xercesc::DOMElement* newChild,
                    xercesc::DOMElement* oldChild)
{
    if (!newChild || !oldChild)
        return false;
    try {
        parent.replaceChild(newChild, oldChild);
        return true;
    } catch (const xercesc::DOMException&) {
        return false;
    }
}

bool InsertElement(xercesc::DOMElement& parent, xercesc::DOMElement* newChild,
                   xercesc::DOMElement* refChild)
{
    if (!newChild)
        return false;
    try {
        parent.insertBefore(newChild, refChild);
        return true;
    } catch (const xercesc::DOMException&) {
        return false;
    }
}

bool SetAttribute(xercesc::DOMElement& element, const char* name, const char* value)
{
    try {
        element.setAttribute(ZRXName(name).c_str(), ZRXName(value).c_str());
        return true;
    } catch (const xercesc::DOMException&) {
        return false;
    }
}

bool SetAttribute(xercesc::DOMElement& element, const char* name, double value)
{
    return SetAttribute(element, name, ZRXML_NAMESPACE::Format(value, false, nullptr).c_str());
}

} // namespace ZRXPrsUtil
