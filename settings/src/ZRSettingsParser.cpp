// ZRSettingsParser: construction, parse, and the pieces that every query
// shares.
#include <zrparsexmlr/ZRSettingsParser.h>

#include "ZRSettingsInternal.h"

#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLString.hpp>

#include <vector>

namespace ZRXPrsUtil {

namespace Settings {

ZRCommon::ZRStatus Opening(const ZRCommon::ZRStatus& status, const xercesc::DOMDocument* document,
                           const xercesc::DOMElement* parameters)
{
    if (!status.IsOK())
        return status;
    if (document == nullptr)
        return Fail(ZRCommon::eNoDocument);
    if (parameters == nullptr)
        return Fail(ZRCommon::eNoParameters);
    return status;
}

const xercesc::DOMElement* Scope(void* context, const xercesc::DOMElement* parameters)
{
    return context != nullptr ? static_cast<const xercesc::DOMElement*>(context) : parameters;
}

const xercesc::DOMElement* FindNamedChild(const xercesc::DOMElement* scope, const char* tag,
                                          const char* name)
{
    if (scope == nullptr || name == nullptr)
        return nullptr;
    const std::vector<XMLCh> wanted = ToUTF16(name);
    // A failed conversion gives only the closing zero; it must not stand for
    // the empty name.
    if (wanted.size() == 1 && name[0] != '\0')
        return nullptr;
    for (const xercesc::DOMElement* child = GetFirstChildElmt(*scope, tag); child != nullptr;
         child = GetNextSiblingElmt(*child, tag)) {
        const XMLCh* childName = GetAttribute(*child, "name");
        if (childName != nullptr && xercesc::XMLString::equals(childName, wanted.data()))
            return child;
    }
    return nullptr;
}

} // namespace Settings

ZRSettingsParser::ZRSettingsParser()
    : ZRPMMLParser(), parametersElement(nullptr), parametersRequired(true)
{}

ZRSettingsParser::~ZRSettingsParser() = default;

ZRCommon::ZRStatus ZRSettingsParser::ParseToDOM(std::istream& stream)
try {
    parametersElement = nullptr;
    ZRPMMLParser::ParseToDOM(stream);
    if (status.IsOK() && rootElement != nullptr) {
        const xercesc::DOMElement* task = GetFirstChildElmt(*rootElement, "MiningBuildTask");
        const xercesc::DOMElement* extension =
            task != nullptr ? GetFirstChildElmt(*task, "Extension") : nullptr;
        parametersElement =
            extension != nullptr ? GetFirstChildElmt(*extension, "Parameters") : nullptr;
    }
    if (status.IsOK() && parametersElement == nullptr && parametersRequired)
        status = Settings::Fail(ZRCommon::eNoParameters);
    if (!status.IsOK())
        parametersElement = nullptr;
    return status;
} catch (...) {
    parametersElement = nullptr;
    document = nullptr;
    rootElement = dataDictionary = transDictionary = modelElement = nullptr;
    return status = Settings::Fail(ZRCommon::eCannotParse);
}

void ZRSettingsParser::SetParametersRequired(bool required)
{
    parametersRequired = required;
}

bool ZRSettingsParser::GetParametersRequired() const
{
    return parametersRequired;
}

const xercesc::DOMElement* ZRSettingsParser::GetParametersElement() const
{
    return parametersElement;
}

} // namespace ZRXPrsUtil
