// The DataModel reader: parses the document and turns each Field into one
// variable of a ZRVarList.
#include "ZRDataModelParserImp.h"

#include "ZRXPlatform.h"
#include "ZRXPrsUtilInternal.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <limits>
#include <sstream>
#include <vector>

namespace ZRXPrsUtil {

namespace {

using ZRCommon::ZRStatus;
using ZRMTD_NAMESPACE::IZRVariable;

const ZRStatus kNoXmlLibrary(103, false);
const ZRStatus kWrongRoot(105, false);
const ZRStatus kNoDocument(107, false);
const ZRStatus kAttributeAbsent(108, false);
const ZRStatus kAttributeRefused(109, false);
const ZRStatus kVariableRefused(111, false);
const ZRStatus kNoFields(113, false);

// "storage" texts with the storage code given to IZRVariable::SetStorageType.
const NameListEntry kStorages[] = {{1, "integer"}, {2, "real"}, {3, "string"}, {4, "date"},
                                   {5, "time"},    {6, "timestamp"}, {0, nullptr}};
const unsigned int kStringStorage = 3;

// "role" texts with their role; any other text, or none, is role 0.
const NameListEntry kRoles[] = {{IZRVariable::eRoleTarget, "target"},
                                {IZRVariable::eRoleFreqWeight, "freqWeight"},
                                {IZRVariable::eRoleInput, "input"},
                                {0, nullptr}};

// What one Field says about its variable.
struct FieldInfo {
    std::string name;
    std::string label;
    unsigned int storage = 0;
    bool textValued = false;
    bool continuous = false;
    IZRVariable::VariableRole role = IZRVariable::eRoleNone;
    double minimum = std::numeric_limits<double>::lowest();
    double maximum = std::numeric_limits<double>::max();
    std::vector<std::string> textValues;
    std::vector<double> numberValues;
    std::vector<std::string> valueLabels;
};

// The Value elements of one Values element. A Value without any attribute is
// passed over; a number that ParseDouble refuses is left out without a
// status, and its label is kept all the same.
void ReadValues(const xercesc::DOMElement& values, FieldInfo& info)
{
    for (const xercesc::DOMElement* value = GetFirstChildElmt(values, "Value"); value;
         value = GetNextSiblingElmt(*value, "Value")) {
        const xercesc::DOMNamedNodeMap* attributes = value->getAttributes();
        if (!attributes || attributes->getLength() == 0)
            continue;
        if (const XMLCh* text = GetAttribute(*value, "value")) {
            double number = 0;
            if (info.textValued)
                info.textValues.push_back(ToUTF8(text));
            else if (ParseDouble(text, number))
                info.numberValues.push_back(number);
        }
        if (const XMLCh* label = GetAttribute(*value, "displayLabel"))
            info.valueLabels.push_back(ToUTF8(label));
    }
}

// Reads the attributes and children of one Field into `info`.
ZRStatus ReadField(const xercesc::DOMElement& field, bool alternateInputRole, FieldInfo& info)
{
    const XMLCh* name = GetAttribute(field, "name");
    if (!name)
        return kAttributeAbsent;
    info.name = ToUTF8(name);
    info.label = ToUTF8(GetAttribute(field, "displayLabel"));

    const XMLCh* storage = GetAttribute(field, "storage");
    if (!storage)
        return kAttributeAbsent;
    const int storageIndex = FindXStrInList(storage, kStorages);
    if (storageIndex < 0)
        return kAttributeRefused;
    info.storage = kStorages[storageIndex].first;
    info.textValued = info.storage == kStringStorage;

    const XMLCh* measure = GetAttribute(field, "measure");
    if (!measure)
        return kAttributeAbsent;
    info.continuous = XStrEqualsUTF8Str(measure, "continuous");

    const int roleIndex = FindXStrInList(GetAttribute(field, "role"), kRoles);
    if (roleIndex >= 0)
        info.role = static_cast<IZRVariable::VariableRole>(kRoles[roleIndex].first);
    if (info.role == IZRVariable::eRoleInput && alternateInputRole)
        info.role = IZRVariable::eRoleAltInput;

    for (const xercesc::DOMElement* child = GetFirstChildElmt(field, nullptr); child;
         child = GetNextSiblingElmt(*child, nullptr)) {
        if (TagNameEquals(*child, "Values")) {
            ReadValues(*child, info);
        } else if (!info.textValued && TagNameEquals(*child, "Range")) {
            // An absent or refused bound stays as it was.
            GetDoubleAttribute(*child, "minValue", info.minimum);
            GetDoubleAttribute(*child, "maxValue", info.maximum);
        }
    }
    return ZRStatus();
}

// The add call for the variable; its index, negative when refused.
int AddVariable(ZRMTD_NAMESPACE::ZRVarList& varList, const FieldInfo& info, bool useBins,
                int binCount)
{
    if (info.continuous) {
        if (info.role == IZRVariable::eRoleFreqWeight)
            return varList.SetWeightVar(info.name, info.label, IZRVariable::eRoundNearest);
        const bool binned = useBins && binCount > 1;
        return varList.AddContVar(info.name, info.label, info.minimum, info.maximum, info.role,
                                  binned, binned ? binCount : -1);
    }
    // Labels go with the values only when there is one per value; otherwise
    // they are dropped altogether.
    if (info.textValued) {
        if (info.valueLabels.size() == info.textValues.size())
            return varList.AddCatVar(info.name, info.label, info.textValues, info.valueLabels,
                                     info.role);
        return varList.AddCatVar(info.name, info.label, info.textValues, info.role);
    }
    if (info.valueLabels.size() == info.numberValues.size())
        return varList.AddCatVar(info.name, info.label, info.numberValues, info.valueLabels,
                                 info.role);
    return varList.AddCatVar(info.name, info.label, info.numberValues, info.role);
}

} // namespace

ZRDataModelParserImp::ZRDataModelParserImp()
    : status(), parser(nullptr), document(nullptr), rootElement(nullptr), fieldsElement(nullptr)
{
    if (!ZRXPlatform::Acquire()) {
        status = kNoXmlLibrary;
        return;
    }
    try {
        parser = NewDOMParser();
    } catch (...) {
        parser = nullptr;
    }
    if (!parser) {
        status = kNoXmlLibrary;
        ZRXPlatform::Release();
    }
}

ZRDataModelParserImp::~ZRDataModelParserImp()
{
    if (parser) {
        delete parser;
        ZRXPlatform::Release();
    }
}

ZRStatus ZRDataModelParserImp::ParseToDOM(const std::string& text)
{
    document = nullptr;
    rootElement = nullptr;
    fieldsElement = nullptr;
    if (!parser)
        return status;

    std::istringstream stream(text);
    ZRXInputSource source(stream);
    std::string message;
    status = ParseWithParser(*parser, &source, nullptr, message);
    if (status.IsOK()) {
        document = parser->getDocument();
        const xercesc::DOMElement* root = document->getDocumentElement();
        if (!root || !TagNameEquals(*root, "DataModel"))
            status = kWrongRoot;
        else
            rootElement = root;
    }
    if (status.IsOK()) {
        fieldsElement = GetFirstChildElmt(*rootElement, "Fields");
        if (!fieldsElement)
            status = kNoFields;
    }
    if (!status.IsOK()) {
        document = nullptr;
        rootElement = nullptr;
        fieldsElement = nullptr;
        // Frees what a failed parse left behind; nothing points into it.
        parser->resetDocumentPool();
    }
    return status;
}

ZRStatus ZRDataModelParserImp::FillVarList(ZRMTD_NAMESPACE::ZRVarList& varList,
                                           bool alternateInputRole, bool useBins,
                                           int binCount) const
{
    ZRStatus result = status;
    if (!result.IsOK())
        return result;
    if (!document)
        return kNoDocument;
    for (const xercesc::DOMElement* field = GetFirstChildElmt(*fieldsElement, "Field");
         field && result.IsOK(); field = GetNextSiblingElmt(*field, "Field")) {
        FieldInfo info;
        result = ReadField(*field, alternateInputRole, info);
        if (!result.IsOK())
            break;
        const int index = AddVariable(varList, info, useBins, binCount);
        IZRVariable* variable = index >= 0 ? varList.GetVarAt(index) : nullptr;
        if (!variable)
            result = kVariableRefused;
        else
            variable->SetStorageType(static_cast<int>(info.storage));
    }
    return result;
}

} // namespace ZRXPrsUtil
