// ZRSettingsParser::FillVarList and FillTransDict: DataField and DerivedField
// elements as variables of a ZRVarList. Both read a field the same way; they
// differ in where Interval margins may stand and in the use of bins.
#include <zrparsexmlr/ZRSettingsParser.h>

#include "ZRSettingsInternal.h"
#include "ZRXPrsUtilInternal.h"

#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include <limits>
#include <string>
#include <vector>

namespace ZRXPrsUtil {

namespace {

using ZRCommon::ZRStatus;
using ZRMTD_NAMESPACE::IZRVariable;
using ZRMTD_NAMESPACE::ZRVarList;

const double kLowest = std::numeric_limits<double>::lowest();
const double kHighest = std::numeric_limits<double>::max();

struct DataTypeWord {
    const char* word;
    bool numeric;
    int storage;
};

const DataTypeWord kDataTypes[] = {
    {"integer", true, 1}, {"double", true, 2}, {"float", true, 2}, {"string", false, 3},
    {"date", true, 4},    {"time", true, 5},   {"dateTime", true, 6},
};

// Everything read of one field before it is added.
struct FieldReading {
    std::string name;
    std::string displayName;
    bool numeric = true;
    bool categorical = true;
    int storage = 0;
    std::vector<double> validNumbers;
    std::vector<double> missingNumbers;
    std::vector<std::string> validStrings;
    std::vector<std::string> missingStrings;
    std::vector<std::string> validLabels;
    std::vector<std::string> missingLabels;
    double leftMargin = kLowest;
    double rightMargin = kHighest;
    double rangeLower = kLowest;
    double rangeUpper = kHighest;
};

bool HasAttributes(const xercesc::DOMElement& element)
{
    const xercesc::DOMNamedNodeMap* attributes = element.getAttributes();
    return attributes != nullptr && attributes->getLength() > 0;
}

void ReadValue(const xercesc::DOMElement& value, FieldReading& field)
{
    if (!HasAttributes(value))
        return;
    const XMLCh* property = GetAttribute(value, "property");
    const bool valid = property == nullptr || XStrEqualsUTF8Str(property, "valid");
    const XMLCh* text = GetAttribute(value, "value");
    if (field.numeric) {
        double number = 0.0;
        if (text != nullptr && ParseDouble(text, number))
            (valid ? field.validNumbers : field.missingNumbers).push_back(number);
    } else if (text != nullptr) {
        (valid ? field.validStrings : field.missingStrings).push_back(ToUTF8(text));
    }
    if (const XMLCh* label = GetAttribute(value, "displayValue"))
        (valid ? field.validLabels : field.missingLabels).push_back(ToUTF8(label));
}

// An absent margin falls back to the open bound, also over what an earlier
// Interval set, so the last Interval of a field decides both margins.
ZRStatus ReadInterval(const xercesc::DOMElement& interval, FieldReading& field)
{
    double margin = 0.0;
    switch (GetDoubleAttribute(interval, "leftMargin", margin)) {
    case 0: field.leftMargin = margin; break;
    case -1: field.leftMargin = kLowest; break;
    default: return Settings::Fail(Settings::kNotAccepted);
    }
    switch (GetDoubleAttribute(interval, "rightMargin", margin)) {
    case 0: field.rightMargin = margin; break;
    case -1: field.rightMargin = kHighest; break;
    default: return Settings::Fail(Settings::kNotAccepted);
    }
    if (field.leftMargin > field.rightMargin)
        return Settings::Fail(Settings::kNotAccepted);
    return ZRStatus();
}

// The invalid range of a numeric field; a DerivedField may also carry its
// Interval inside the Extension.
ZRStatus ReadExtension(const xercesc::DOMElement& extension, bool intervalInside,
                       FieldReading& field)
{
    double bound = 0.0;
    const XMLCh* name = GetAttribute(extension, "name");
    if (name != nullptr && GetDoubleAttribute(extension, "value", bound) == 0) {
        if (XStrEqualsUTF8Str(name, "invalidRangeLower"))
            field.rangeLower = bound;
        else if (XStrEqualsUTF8Str(name, "invalidRangeUpper"))
            field.rangeUpper = bound;
    }
    if (intervalInside) {
        if (const xercesc::DOMElement* interval = GetFirstChildElmt(extension, "Interval"))
            return ReadInterval(*interval, field);
    }
    return ZRStatus();
}

ZRStatus ReadField(const xercesc::DOMElement& element, bool intervalInExtension,
                   FieldReading& field)
{
    const XMLCh* name = GetAttribute(element, "name");
    if (name == nullptr)
        return Settings::Fail(Settings::kAbsent);
    field.name = ToUTF8(name);
    if (const XMLCh* displayName = GetAttribute(element, "displayName"))
        field.displayName = ToUTF8(displayName);

    const XMLCh* dataType = GetAttribute(element, "dataType");
    if (dataType == nullptr)
        return Settings::Fail(Settings::kAbsent);
    const DataTypeWord* kind = nullptr;
    for (const DataTypeWord& word : kDataTypes) {
        if (XStrEqualsUTF8Str(dataType, word.word)) {
            kind = &word;
            break;
        }
    }
    if (kind == nullptr)
        return Settings::Fail(Settings::kNotAccepted);
    field.numeric = kind->numeric;
    field.storage = kind->storage;

    const XMLCh* optype = GetAttribute(element, "optype");
    if (optype == nullptr)
        return Settings::Fail(Settings::kAbsent);
    field.categorical = !XStrEqualsUTF8Str(optype, "continuous");

    ZRStatus result;
    for (const xercesc::DOMElement* child = GetFirstChildElmt(element, nullptr);
         child != nullptr && result.IsOK(); child = GetNextSiblingElmt(*child, nullptr)) {
        if (TagNameEquals(*child, "Value"))
            ReadValue(*child, field);
        else if (!field.numeric)
            continue;
        else if (TagNameEquals(*child, "Interval"))
            result = ReadInterval(*child, field);
        else if (TagNameEquals(*child, "Extension"))
            result = ReadExtension(*child, intervalInExtension, field);
    }
    return result;
}

// Bins of a continuous field: cut points from the first bound to the last,
// and one label per bin.
struct Bins {
    std::vector<double> cutPoints;
    std::vector<std::string> labels;
};

ZRStatus AddField(ZRVarList& varList, const FieldReading& field, const Bins& bins)
{
    const IZRVariable::VariableRole role = IZRVariable::eRoleInput;
    const bool binned = bins.cutPoints.size() >= 3;
    int index = -1;
    if (field.categorical && field.numeric) {
        index = field.validLabels.size() == field.validNumbers.size()
                    ? varList.AddCatVar(field.name, field.displayName, field.validNumbers,
                                        field.validLabels, role)
                    : varList.AddCatVar(field.name, field.displayName, field.validNumbers, role);
    } else if (field.categorical) {
        index = field.validLabels.size() == field.validStrings.size()
                    ? varList.AddCatVar(field.name, field.displayName, field.validStrings,
                                        field.validLabels, role)
                    : varList.AddCatVar(field.name, field.displayName, field.validStrings, role);
    } else if (binned) {
        const std::vector<double> inner(bins.cutPoints.begin() + 1, bins.cutPoints.end() - 1);
        index = varList.AddContVar(field.name, field.displayName, bins.cutPoints.front(),
                                   bins.cutPoints.back(), inner, true, role);
    } else {
        index = varList.AddContVar(field.name, field.displayName, field.leftMargin,
                                   field.rightMargin, role, false, -1);
    }
    if (index < 0)
        return Settings::Fail(Settings::kListRefused);

    ZRMTD_NAMESPACE::IZREncoder* encoder = varList.GetEncoderAt(index);
    // One label per bin; a first label of "0" marks labels that are mere
    // bin numbers, which the encoder numbers by itself.
    if (binned && bins.labels.size() + 1 == bins.cutPoints.size() && bins.labels[0] != "0")
        encoder->SetBinLabels(bins.labels);
    if (field.numeric) {
        for (std::size_t i = 0; i < field.missingNumbers.size(); ++i)
            encoder->AddMissing(field.missingNumbers[i], i < field.missingLabels.size()
                                                             ? field.missingLabels[i]
                                                             : std::string());
        if (field.rangeLower != kLowest || field.rangeUpper != kHighest)
            encoder->SetMissingRange(field.rangeLower, field.rangeUpper);
    } else if (field.categorical) {
        for (std::size_t i = 0; i < field.missingStrings.size(); ++i)
            encoder->AddMissing(field.missingStrings[i], i < field.missingLabels.size()
                                                             ? field.missingLabels[i]
                                                             : std::string());
    }

    IZRVariable* variable = varList.GetVarAt(index);
    if (variable == nullptr)
        return Settings::Fail(Settings::kListRefused);
    variable->SetStorageType(field.storage);
    return ZRStatus();
}

} // namespace

ZRCommon::ZRStatus ZRSettingsParser::FillVarList(ZRVarList& varList, bool useBins) const
{
    ZRStatus result = status;
    if (result.IsOK() && document == nullptr)
        result = Settings::Fail(Settings::kNoDocument);
    if (!result.IsOK() || dataDictionary == nullptr)
        return result;

    for (const xercesc::DOMElement* element = GetFirstChildElmt(*dataDictionary, "DataField");
         element != nullptr && result.IsOK();
         element = GetNextSiblingElmt(*element, "DataField")) {
        FieldReading field;
        result = ReadField(*element, false, field);
        if (!result.IsOK())
            break;
        Bins bins;
        if (useBins && !field.categorical) {
            if (transDictionary == nullptr ||
                !SetBinsFrTransDict(field.name, bins.cutPoints, bins.labels))
                result = Settings::Fail(Settings::kNoBins);
        }
        if (result.IsOK())
            result = AddField(varList, field, bins);
    }
    return result;
}

ZRCommon::ZRStatus ZRSettingsParser::FillTransDict(ZRVarList& varList) const
{
    ZRStatus result = status;
    if (result.IsOK() && document == nullptr)
        result = Settings::Fail(Settings::kNoDocument);
    if (!result.IsOK() || transDictionary == nullptr)
        return result;

    const Bins noBins;
    for (const xercesc::DOMElement* element =
             GetFirstChildElmt(*transDictionary, "DerivedField");
         element != nullptr && result.IsOK();
         element = GetNextSiblingElmt(*element, "DerivedField")) {
        FieldReading field;
        result = ReadField(*element, true, field);
        if (result.IsOK())
            result = AddField(varList, field, noBins);
    }
    return result;
}

} // namespace ZRXPrsUtil
