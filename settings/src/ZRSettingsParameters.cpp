// ZRSettingsParser: scalar parameters, their declared types, parameter
// groups, arrays and matrices.
#include <zrparsexmlr/ZRSettingsParser.h>

#include "ZRSettingsInternal.h"
#include "ZRXPrsUtilInternal.h"

#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/dom/DOMElement.hpp>

#include <string>
#include <vector>

namespace ZRXPrsUtil {

namespace {

using ZRCommon::ZRStatus;
using namespace Settings;

// One item of a list or matrix in the form asked for. False when the form
// refuses the text: the int form takes integers of 0 or more, the double form
// takes numbers with NaN as the missing value; the string form takes all.
bool ReadItem(const XMLCh* text, std::string& item)
{
    item = ToUTF8(text);
    return true;
}

bool ReadItem(const XMLCh* text, int& item)
{
    int number = 0;
    if (!ParseInteger(text, number) || number < 0)
        return false;
    item = number;
    return true;
}

bool ReadItem(const XMLCh* text, double& item)
{
    return ParseDouble(text, item);
}

// A list leaves out empty names; numbers are never empty.
bool IsLeftOut(const std::string& item)
{
    return item.empty();
}
bool IsLeftOut(int)
{
    return false;
}
bool IsLeftOut(double)
{
    return false;
}

// One item of a list: 123 when it holds no value, 109 when the form refuses
// it; an empty name is left out.
template <class T>
ZRStatus AppendItem(const XMLCh* text, std::vector<T>& out)
{
    if (text == nullptr)
        return Fail(ZRCommon::eNoValue);
    T item{};
    if (!ReadItem(text, item))
        return Fail(ZRCommon::eNotAccepted);
    if (!IsLeftOut(item))
        out.push_back(item);
    return ZRStatus();
}

template <class T>
ZRStatus ReadArray(const ZRStatus& opening, const xercesc::DOMElement* scope, const char* name,
                   std::vector<T>& out)
try {
    if (!opening.IsOK())
        return opening;
    const xercesc::DOMElement* parameter = FindNamedChild(scope, "Parameter", name);
    if (parameter == nullptr)
        return Fail(ZRCommon::eNoSuchParameter);
    out.clear();

    const xercesc::DOMElement* list = GetFirstChildElmt(*parameter, "ListValue");
    if (list == nullptr)
        return AppendItem(GetAttribute(*parameter, "value"), out);
    const xercesc::DOMElement* value = GetFirstChildElmt(*list, "Value");
    if (value == nullptr)
        return Fail(ZRCommon::eNoValue);
    ZRStatus result;
    for (; value != nullptr && result.IsOK(); value = GetNextSiblingElmt(*value, "Value"))
        result = AppendItem(GetAttribute(*value, "value"), out);
    return result;
} catch (...) {
    return Fail(ZRCommon::eOutOfMemory);
}

template <class T>
ZRStatus ReadMatrix(const ZRStatus& opening, const xercesc::DOMElement* scope, const char* name,
                    std::vector<std::vector<T>>& out)
try {
    if (!opening.IsOK())
        return opening;
    const xercesc::DOMElement* matrix = FindNamedChild(scope, "MatrixParmeter", name);
    if (matrix == nullptr)
        return Fail(ZRCommon::eNoSuchParameter);
    out.clear();
    for (const xercesc::DOMElement* array = GetFirstChildElmt(*matrix, "ArrayParameter");
         array != nullptr; array = GetNextSiblingElmt(*array, "ArrayParameter")) {
        std::vector<T> row;
        for (const xercesc::DOMElement* value = GetFirstChildElmt(*array, "Value");
             value != nullptr; value = GetNextSiblingElmt(*value, "Value")) {
            const XMLCh* text = GetAttribute(*value, "value");
            T item{};
            if (text != nullptr && ReadItem(text, item))
                row.push_back(item);
        }
        out.push_back(std::move(row));
    }
    return ZRStatus();
} catch (...) {
    return Fail(ZRCommon::eOutOfMemory);
}

// The Parameter of that name in the scope and its `value`. A status that is
// not OK means there is nothing to read: 120 no such Parameter, 121 it holds a
// list, 123 it holds nothing.
ZRStatus FindValue(const ZRStatus& opening, const xercesc::DOMElement* scope, const char* name,
                   const XMLCh*& text)
{
    if (!opening.IsOK())
        return opening;
    const xercesc::DOMElement* parameter = FindNamedChild(scope, "Parameter", name);
    if (parameter == nullptr)
        return Fail(ZRCommon::eNoSuchParameter);
    text = GetAttribute(*parameter, "value");
    if (text == nullptr)
        return Fail(GetFirstChildElmt(*parameter, "ListValue") != nullptr ? ZRCommon::eIsList
                                                                          : ZRCommon::eNoValue);
    return ZRStatus();
}

// The `value` of a Parameter in the form asked for; 109 and `out` untouched
// when the form refuses it.
ZRStatus ReadValue(const XMLCh* text, std::string& out)
{
    out = ToUTF8(text);
    return ZRStatus();
}

ZRStatus ReadValue(const XMLCh* text, int& out)
{
    // A negative integer is refused but still handed back, so that the
    // caller can see what the document said.
    int number = 0;
    if (!ParseInteger(text, number))
        return Fail(ZRCommon::eNotAccepted);
    out = number;
    return number < 0 ? Fail(ZRCommon::eNotAccepted) : ZRStatus();
}

ZRStatus ReadValue(const XMLCh* text, double& out)
{
    return ParseDouble(text, out) ? ZRStatus() : Fail(ZRCommon::eNotAccepted);
}

ZRStatus ReadValue(const XMLCh* text, bool& out)
{
    if (XStrEqualsUTF8Str(text, "true"))
        out = true;
    else if (XStrEqualsUTF8Str(text, "false"))
        out = false;
    else
        return Fail(ZRCommon::eNotAccepted);
    return ZRStatus();
}

template <class T>
ZRStatus ReadParameter(const ZRStatus& opening, const xercesc::DOMElement* scope, const char* name,
                       T& out)
try {
    const XMLCh* text = nullptr;
    const ZRStatus result = FindValue(opening, scope, name, text);
    return result.IsOK() ? ReadValue(text, out) : result;
} catch (...) {
    return Fail(ZRCommon::eOutOfMemory);
}

struct TypeWord {
    const char* word;
    ZRSettingsParser::ParamType type;
};

const TypeWord kTypeWords[] = {
    {"string", ZRSettingsParser::ParamTypeString},
    {"double", ZRSettingsParser::ParamTypeDouble},
    {"integer", ZRSettingsParser::ParamTypeInteger},
    {"boolean", ZRSettingsParser::ParamTypeBoolean},
    {"enum", ZRSettingsParser::ParamTypeEnum},
    {"fieldName", ZRSettingsParser::ParamTypeFieldName},
};

} // namespace

ZRCommon::ZRStatus ZRSettingsParser::GetParameter(const char* name, std::string& out,
                                                  void* context) const
{
    return ReadParameter(Opening(status, document, parametersElement),
                         Scope(context, parametersElement), name, out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetParameter(const char* name, int& out, void* context) const
{
    return ReadParameter(Opening(status, document, parametersElement),
                         Scope(context, parametersElement), name, out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetParameter(const char* name, double& out,
                                                  void* context) const
{
    return ReadParameter(Opening(status, document, parametersElement),
                         Scope(context, parametersElement), name, out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetParameter(const char* name, bool& out, void* context) const
{
    return ReadParameter(Opening(status, document, parametersElement),
                         Scope(context, parametersElement), name, out);
}

ZRSettingsParser::ParamType ZRSettingsParser::GetParameterType(const char* name, void* context)
try {
    if (!Opening(status, document, parametersElement).IsOK())
        return ParamTypeInvalid;
    const xercesc::DOMElement* parameter =
        FindNamedChild(Scope(context, parametersElement), "Parameter", name);
    const XMLCh* type = parameter != nullptr ? GetAttribute(*parameter, "type") : nullptr;
    if (type == nullptr)
        return ParamTypeInvalid;
    for (const TypeWord& word : kTypeWords) {
        if (XStrEqualsUTF8Str(type, word.word))
            return word.type;
    }
    return ParamTypeInvalid;
} catch (...) {
    return ParamTypeInvalid;
}

void* ZRSettingsParser::GetComplexParameter(const char* name, void* context)
try {
    if (!Opening(status, document, parametersElement).IsOK())
        return nullptr;
    const xercesc::DOMElement* group =
        FindNamedChild(Scope(context, parametersElement), "ComplexParameter", name);
    // The context is handed out untyped; the queries turn it back into the
    // const element that it is.
    return const_cast<xercesc::DOMElement*>(group);
} catch (...) {
    return nullptr;
}

ZRCommon::ZRStatus ZRSettingsParser::GetArray(const char* name, std::vector<std::string>& out,
                                              void* context) const
{
    return ReadArray(Opening(status, document, parametersElement),
                     Scope(context, parametersElement), name, out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetArray(const char* name, std::vector<int>& out,
                                              void* context) const
{
    return ReadArray(Opening(status, document, parametersElement),
                     Scope(context, parametersElement), name, out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetArray(const char* name, std::vector<double>& out,
                                              void* context) const
{
    return ReadArray(Opening(status, document, parametersElement),
                     Scope(context, parametersElement), name, out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetMatrix(const char* name,
                                               std::vector<std::vector<std::string>>& out,
                                               void* context)
{
    return ReadMatrix(Opening(status, document, parametersElement),
                      Scope(context, parametersElement), name, out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetMatrix(const char* name, std::vector<std::vector<int>>& out,
                                               void* context)
{
    return ReadMatrix(Opening(status, document, parametersElement),
                      Scope(context, parametersElement), name, out);
}

ZRCommon::ZRStatus ZRSettingsParser::GetMatrix(const char* name,
                                               std::vector<std::vector<double>>& out, void* context)
{
    return ReadMatrix(Opening(status, document, parametersElement),
                      Scope(context, parametersElement), name, out);
}

} // namespace ZRXPrsUtil
