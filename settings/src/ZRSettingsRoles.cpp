// ZRSettingsParser: the variable roles of the job, read from Parameter
// elements that are direct children of the Parameters element.
#include <zrparsexmlr/ZRSettingsParser.h>

#include "ZRSettingsInternal.h"

#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/dom/DOMElement.hpp>

#include <string>
#include <vector>

namespace ZRXPrsUtil {

namespace {

using ZRCommon::ZRStatus;
using namespace Settings;

bool IsListMarked(const xercesc::DOMElement& parameter)
{
    const XMLCh* isList = GetAttribute(parameter, "isList");
    return isList != nullptr && XStrEqualsUTF8Str(isList, "true");
}

void AppendName(const XMLCh* text, std::vector<std::string>& out)
{
    std::string name = ToUTF8(text);
    if (!name.empty())
        out.push_back(std::move(name));
}

} // namespace

ZRCommon::ZRStatus ZRSettingsParser::GetVariables(const char* name,
                                                  std::vector<std::string>& out) const
try {
    const ZRStatus opening = Opening(status, document, parametersElement);
    if (!opening.IsOK())
        return opening;
    const xercesc::DOMElement* parameter = FindNamedChild(parametersElement, "Parameter", name);
    if (parameter == nullptr)
        return Fail(ZRCommon::eNoSuchParameter);
    out.clear();

    if (IsListMarked(*parameter)) {
        const xercesc::DOMElement* list = GetFirstChildElmt(*parameter, "ListValue");
        if (list == nullptr)
            return Fail(ZRCommon::eNoListValue);
        for (const xercesc::DOMElement* value = GetFirstChildElmt(*list, "Value"); value != nullptr;
             value = GetNextSiblingElmt(*value, "Value")) {
            const XMLCh* text = GetAttribute(*value, "value");
            if (text == nullptr)
                return Fail(ZRCommon::eAttributeAbsent);
            AppendName(text, out);
        }
        return ZRStatus();
    }
    const XMLCh* text = GetAttribute(*parameter, "value");
    if (text == nullptr)
        return Fail(ZRCommon::eAttributeAbsent);
    AppendName(text, out);
    return ZRStatus();
} catch (...) {
    return Fail(ZRCommon::eOutOfMemory);
}

ZRCommon::ZRStatus ZRSettingsParser::GetVariables(const char* name, std::string& out) const
try {
    const ZRStatus opening = Opening(status, document, parametersElement);
    if (!opening.IsOK())
        return opening;
    const xercesc::DOMElement* parameter = FindNamedChild(parametersElement, "Parameter", name);
    if (parameter == nullptr)
        return Fail(ZRCommon::eNoSuchParameter);
    if (const XMLCh* text = GetAttribute(*parameter, "value")) {
        out = ToUTF8(text);
        return ZRStatus();
    }
    return Fail(IsListMarked(*parameter) ? ZRCommon::eIsList : ZRCommon::eAttributeAbsent);
} catch (...) {
    return Fail(ZRCommon::eOutOfMemory);
}

ZRCommon::ZRStatus ZRSettingsParser::GetTargetVars(std::vector<std::string>& out) const
{
    return GetArray("target", out, nullptr);
}

ZRCommon::ZRStatus ZRSettingsParser::GetCatResponseVars(std::vector<std::string>& out) const
{
    return GetVariables("CatResponses", out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetContResponseVars(std::vector<std::string>& out) const
{
    return GetVariables("ContResponses", out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetPredictors(std::vector<std::string>& out) const
{
    return GetArray("inputs", out, nullptr);
}

ZRCommon::ZRStatus ZRSettingsParser::GetCatPredictors(std::vector<std::string>& out) const
{
    return GetVariables("CatPredictors", out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetContPredictors(std::vector<std::string>& out) const
{
    return GetVariables("ContPredictors", out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetFrequencyWeight(std::string& out) const
{
    return GetVariables("FrequencyWeightVar", out);
}

} // namespace ZRXPrsUtil
