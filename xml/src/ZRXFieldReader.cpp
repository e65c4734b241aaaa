// The one reader of field dictionaries: the rules of each document kind, the
// walk over a field's attributes and children, and the add to the list.
#include "ZRXFieldReader.h"

#include "ZRXPrsUtilInternal.h"

#include <zrcommonr/ZRStatusCodes.h>

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLString.hpp>

#include <iterator>
#include <limits>

namespace ZRXPrsUtil {

using xercesc::DOMElement;
using xercesc::DOMNode;
using ZRCommon::ZRStatus;
using ZRMTD_NAMESPACE::IZRVariable;
using ZRMTD_NAMESPACE::ZRVarList;

namespace {

const double kLowest = std::numeric_limits<double>::lowest();
const double kHighest = std::numeric_limits<double>::max();

// The dataType words of PMML: "string", and the words read as plain doubles.
const FieldTypeWord kPMMLTypes[] = {{"string", false, 0},
                                    {"double", true, 0},
                                    {"float", true, 0},
                                    {"integer", true, 0},
                                    {"date", true, 0},
                                    {"time", true, 0},
                                    {"dateTime", true, 0},
                                    {"timeSeconds", true, 0},
                                    {"dateDaysSince[0]", true, 0},
                                    {"dateDaysSince[1960]", true, 0},
                                    {"dateDaysSince[1970]", true, 0},
                                    {"dateDaysSince[1980]", true, 0},
                                    {"dateTimeSecondsSince[0]", true, 0},
                                    {"dateTimeSecondsSince[1960]", true, 0},
                                    {"dateTimeSecondsSince[1970]", true, 0},
                                    {"dateTimeSecondsSince[1980]", true, 0}};

// The dataType words of a settings document, with their storage codes.
const FieldTypeWord kSettingsTypes[] = {
    {"integer", true, 1}, {"double", true, 2}, {"float", true, 2},   {"string", false, 3},
    {"date", true, 4},    {"time", true, 5},   {"dateTime", true, 6}};

// The storage words of a DataModel document; only "string" holds text.
const FieldTypeWord kDataModelStorages[] = {{"integer", true, 1}, {"real", true, 2},
                                            {"string", false, 3}, {"date", true, 4},
                                            {"time", true, 5},    {"timestamp", true, 6}};

// The role words of a DataModel Field; any other word, or none, is no role.
const NameListEntry kDataModelRoles[] = {{IZRVariable::eRoleTarget, "target"},
                                         {IZRVariable::eRoleFreqWeight, "freqWeight"},
                                         {IZRVariable::eRoleInput, "input"},
                                         {0, nullptr}};

ZRStatus Fail(ZRCommon::StatusCode code)
{
    return ZRStatus(code, false);
}

bool Equals(const XMLCh* text, const XMLCh* name)
{
    return xercesc::XMLString::equals(text, name);
}

// A Value's three attributes in one pass over the element's attributes
// rather than a lookup by name for each: a Value is read per value of every
// field, so this is the innermost step of the dictionary walk. A Value
// without attributes is passed over; a number that ParseDouble refuses is
// left out, and its label is kept all the same.
void ReadValue(const DOMElement& value, const FieldRules& rules, FieldRecord& record)
{
    if (!value.hasAttributes())
        return;
    const XMLCh* property = nullptr;
    const XMLCh* text = nullptr;
    const XMLCh* label = nullptr;
    const xercesc::DOMNamedNodeMap* attributes = value.getAttributes();
    for (XMLSize_t i = 0, count = attributes->getLength(); i < count; ++i) {
        const auto& attribute = static_cast<const xercesc::DOMAttr&>(*attributes->item(i));
        const XMLCh* name = attribute.getName();
        if (Equals(name, u"value"))
            text = AttributeValue(attribute);
        else if (Equals(name, rules.valueLabelAttribute))
            label = AttributeValue(attribute);
        else if (rules.propertyAttribute && Equals(name, rules.propertyAttribute))
            property = AttributeValue(attribute);
    }
    const bool valid = !property || XStrEqualsUTF8Str(property, "valid");
    if (text) {
        if (record.numeric) {
            double number = 0.0;
            if (ParseDouble(text, number))
                (valid ? record.validNumbers : record.missingNumbers).push_back(number);
        } else {
            (valid ? record.validStrings : record.missingStrings).Add(text);
        }
    }
    if (label)
        (valid ? record.validLabels : record.missingLabels).Add(label);
}

// An absent margin falls back to the open bound, also over what an earlier
// Interval set, so the last Interval of a field decides both margins.
ZRStatus ReadInterval(const DOMElement& interval, FieldRecord& record)
{
    double margin = 0.0;
    switch (GetDoubleAttribute(interval, "leftMargin", margin)) {
    case 0: record.lower = margin; break;
    case -1: record.lower = kLowest; break;
    default: return Fail(ZRCommon::eNotAccepted);
    }
    switch (GetDoubleAttribute(interval, "rightMargin", margin)) {
    case 0: record.upper = margin; break;
    case -1: record.upper = kHighest; break;
    default: return Fail(ZRCommon::eNotAccepted);
    }
    if (record.lower > record.upper)
        return Fail(ZRCommon::eNotAccepted);
    return ZRStatus();
}

// An Extension that sets one end of the invalid range (anything else about
// it is passed over), and may hold the field's Interval.
ZRStatus ReadExtension(const DOMElement& extension, const FieldRules& rules, FieldRecord& record)
{
    if (rules.invalidRangeExtension) {
        double bound = 0.0;
        const XMLCh* name = GetAttribute(extension, "name");
        if (name && GetDoubleAttribute(extension, "value", bound) == 0) {
            if (XStrEqualsUTF8Str(name, "invalidRangeLower"))
                record.rangeLower = bound;
            else if (XStrEqualsUTF8Str(name, "invalidRangeUpper"))
                record.rangeUpper = bound;
        }
    }
    if (rules.intervalInExtension)
        if (const DOMElement* interval = GetFirstChildElmt(extension, "Interval"))
            return ReadInterval(*interval, record);
    return ZRStatus();
}

// The Value elements and, for a numeric field, the bounds and the invalid
// range. An absent or refused bound of a range element stays as it was.
ZRStatus ReadChildren(const DOMElement& field, const FieldRules& rules, FieldRecord& record)
{
    const XMLCh* valueHolder = rules.valuesGroup ? rules.valuesGroup : u"Value";
    for (const DOMNode* node = field.getFirstChild(); node; node = node->getNextSibling()) {
        if (node->getNodeType() != DOMNode::ELEMENT_NODE)
            continue;
        const DOMElement& child = static_cast<const DOMElement&>(*node);
        const XMLCh* tag = child.getTagName();
        if (Equals(tag, valueHolder)) {
            if (!rules.valuesGroup)
                ReadValue(child, rules, record);
            else
                for (const DOMElement* value = GetFirstChildElmt(child, "Value"); value;
                     value = GetNextSiblingElmt(*value, "Value"))
                    ReadValue(*value, rules, record);
            continue;
        }
        if (!record.numeric)
            continue;
        ZRStatus result;
        if (rules.intervalInField && Equals(tag, u"Interval")) {
            result = ReadInterval(child, record);
        } else if ((rules.invalidRangeExtension || rules.intervalInExtension) &&
                   Equals(tag, u"Extension")) {
            result = ReadExtension(child, rules, record);
        } else if (rules.rangeElement && Equals(tag, rules.rangeElement)) {
            GetDoubleAttribute(child, "minValue", record.lower);
            GetDoubleAttribute(child, "maxValue", record.upper);
        }
        if (!result.IsOK())
            return result;
    }
    return ZRStatus();
}

// Everything of a field but its name, which the walk has read.
ZRStatus ReadField(const DOMElement& field, const FieldRules& rules, FieldRecord& record)
{
    if (const XMLCh* label = GetAttribute(field, rules.labelAttribute))
        AssignUTF8(record.label, label);
    const XMLCh* type = GetAttribute(field, rules.typeAttribute);
    if (!type)
        return Fail(ZRCommon::eAttributeAbsent);
    const FieldTypeWord* word = nullptr;
    for (std::size_t i = 0; i < rules.typeCount && !word; ++i)
        if (XStrEqualsUTF8Str(type, rules.types[i].word))
            word = &rules.types[i];
    if (!word)
        return Fail(ZRCommon::eNotAccepted);
    record.numeric = word->numeric;
    record.storage = word->storage;
    const XMLCh* measure = GetAttribute(field, rules.measureAttribute);
    if (!measure)
        return Fail(ZRCommon::eAttributeAbsent);
    record.categorical = !XStrEqualsUTF8Str(measure, "continuous");
    if (rules.roleAttribute) {
        const int index = FindXStrInList(GetAttribute(field, rules.roleAttribute), rules.roles);
        record.role = index >= 0 ? static_cast<IZRVariable::VariableRole>(rules.roles[index].first)
                                 : IZRVariable::eRoleNone;
    }
    return ReadChildren(field, rules, record);
}

// Value labels go with the values only when there is one per value;
// otherwise they are dropped altogether.
int AddCategorical(ZRVarList& varList, const FieldRecord& record)
{
    if (record.numeric) {
        if (record.validLabels.size() == record.validNumbers.size())
            return varList.AddCatVar(record.name, record.label, record.validNumbers,
                                     record.validLabels.Texts(), record.role);
        return varList.AddCatVar(record.name, record.label, record.validNumbers, record.role);
    }
    if (record.validLabels.size() == record.validStrings.size())
        return varList.AddCatVar(record.name, record.label, record.validStrings.Texts(),
                                 record.validLabels.Texts(), record.role);
    return varList.AddCatVar(record.name, record.label, record.validStrings.Texts(), record.role);
}

int AddContinuous(ZRVarList& varList, const FieldRules& rules, const FieldRecord& record,
                  const std::vector<double>& cuts, const DictionaryOptions& options)
{
    if (cuts.size() >= 3) {
        const std::vector<double> inner(cuts.begin() + 1, cuts.end() - 1);
        return varList.AddContVar(record.name, record.label, cuts.front(), cuts.back(), inner, true,
                                  record.role);
    }
    if (record.role == IZRVariable::eRoleFreqWeight)
        return varList.SetWeightVar(record.name, record.label, IZRVariable::eRoundNearest);
    if (!rules.boundedContinuous)
        return varList.AddContVar(record.name, record.label, record.role);
    return varList.AddContVar(record.name, record.label, record.lower, record.upper, record.role,
                              options.useBins, options.binCount);
}

// Missing values and the invalid range go to the encoder of the variable
// just added. A continuous string field has none.
void FeedEncoder(ZRVarList& varList, int index, const FieldRecord& record)
{
    const bool range = record.rangeLower != kLowest || record.rangeUpper != kHighest;
    const std::size_t missing = record.numeric
                                    ? record.missingNumbers.size()
                                    : (record.categorical ? record.missingStrings.size() : 0);
    if (missing == 0 && !(record.numeric && range))
        return;
    ZRMTD_NAMESPACE::IZREncoder& encoder = *varList.GetEncoderAt(index);
    const std::string noLabel;
    auto labelAt = [&](std::size_t i) -> const std::string& {
        return i < record.missingLabels.size() ? record.missingLabels[i] : noLabel;
    };
    if (record.numeric) {
        for (std::size_t i = 0; i < missing; ++i)
            encoder.AddMissing(record.missingNumbers[i], labelAt(i));
        if (range)
            encoder.SetMissingRange(record.rangeLower, record.rangeUpper);
    } else {
        for (std::size_t i = 0; i < missing; ++i)
            encoder.AddMissing(record.missingStrings[i], labelAt(i));
    }
}

ZRStatus AddField(ZRVarList& varList, const FieldRules& rules, const FieldRecord& record,
                  const std::vector<double>& cuts, const std::vector<std::string>& binLabels,
                  const DictionaryOptions& options)
{
    const int index = record.categorical ? AddCategorical(varList, record)
                                         : AddContinuous(varList, rules, record, cuts, options);
    if (index < 0)
        return Fail(ZRCommon::eVariableRefused);
    if (!record.categorical && cuts.size() >= 3 && binLabels.size() + 1 == cuts.size() &&
        binLabels.front() != "0")
        varList.GetEncoderAt(index)->SetBinLabels(binLabels);
    FeedEncoder(varList, index, record);
    if (rules.setsStorage) {
        IZRVariable* variable = varList.GetVarAt(index);
        if (!variable)
            return Fail(ZRCommon::eVariableRefused);
        variable->SetStorageType(record.storage);
    }
    return ZRStatus();
}

} // namespace

const FieldRules kPMMLDataFieldRules = {
    /* labelAttribute */ "displayName",
    /* typeAttribute */ "dataType",
    /* types */ kPMMLTypes,
    /* typeCount */ std::size(kPMMLTypes),
    /* measureAttribute */ "optype",
    /* roleAttribute */ nullptr,
    /* roles */ nullptr,
    /* valuesGroup */ nullptr,
    /* valueLabelAttribute */ u"displayValue",
    /* propertyAttribute */ u"property",
    /* intervalInField */ false,
    /* intervalInExtension */ false,
    /* invalidRangeExtension */ true,
    /* rangeElement */ nullptr,
    /* boundedContinuous */ false,
    /* setsStorage */ false};

const FieldRules kSettingsDataFieldRules = {
    /* labelAttribute */ "displayName",
    /* typeAttribute */ "dataType",
    /* types */ kSettingsTypes,
    /* typeCount */ std::size(kSettingsTypes),
    /* measureAttribute */ "optype",
    /* roleAttribute */ nullptr,
    /* roles */ nullptr,
    /* valuesGroup */ nullptr,
    /* valueLabelAttribute */ u"displayValue",
    /* propertyAttribute */ u"property",
    /* intervalInField */ true,
    /* intervalInExtension */ false,
    /* invalidRangeExtension */ true,
    /* rangeElement */ nullptr,
    /* boundedContinuous */ true,
    /* setsStorage */ true};

const FieldRules kSettingsDerivedFieldRules = {
    /* labelAttribute */ "displayName",
    /* typeAttribute */ "dataType",
    /* types */ kSettingsTypes,
    /* typeCount */ std::size(kSettingsTypes),
    /* measureAttribute */ "optype",
    /* roleAttribute */ nullptr,
    /* roles */ nullptr,
    /* valuesGroup */ nullptr,
    /* valueLabelAttribute */ u"displayValue",
    /* propertyAttribute */ u"property",
    /* intervalInField */ true,
    /* intervalInExtension */ true,
    /* invalidRangeExtension */ true,
    /* rangeElement */ nullptr,
    /* boundedContinuous */ true,
    /* setsStorage */ true};

const FieldRules kDataModelFieldRules = {
    /* labelAttribute */ "displayLabel",
    /* typeAttribute */ "storage",
    /* types */ kDataModelStorages,
    /* typeCount */ std::size(kDataModelStorages),
    /* measureAttribute */ "measure",
    /* roleAttribute */ "role",
    /* roles */ kDataModelRoles,
    /* valuesGroup */ u"Values",
    /* valueLabelAttribute */ u"displayLabel",
    /* propertyAttribute */ nullptr,
    /* intervalInField */ false,
    /* intervalInExtension */ false,
    /* invalidRangeExtension */ false,
    /* rangeElement */ u"Range",
    /* boundedContinuous */ true,
    /* setsStorage */ true};

void TextList::Clear()
{
    for (std::string& text : texts)
        spare.push_back(std::move(text));
    texts.clear();
}

void TextList::Add(const XMLCh* text)
{
    if (spare.empty()) {
        texts.emplace_back();
    } else {
        texts.push_back(std::move(spare.back()));
        spare.pop_back();
    }
    AssignUTF8(texts.back(), text);
}

void FieldRecord::Reset()
{
    name.clear();
    label.clear();
    numeric = categorical = true;
    storage = 0;
    role = IZRVariable::eRoleInput;
    validNumbers.clear();
    validStrings.Clear();
    validLabels.Clear();
    missingNumbers.clear();
    missingStrings.Clear();
    missingLabels.Clear();
    lower = rangeLower = kLowest;
    upper = rangeUpper = kHighest;
}

FieldNameSet::FieldNameSet(const std::vector<std::string>& names)
{
    // The views point into `texts`, which is never grown past its reserved
    // size and so never moves its strings.
    texts.reserve(names.size());
    keys.reserve(names.size());
    for (const std::string& name : names) {
        const std::vector<XMLCh> wide = ToUTF16(name.c_str());
        texts.emplace_back(wide.data());
        keys.insert(texts.back());
    }
}

bool FieldNameSet::Contains(const XMLCh* name) const
{
    return keys.find(std::u16string_view(name)) != keys.end();
}

ZRStatus ReadFieldDictionary(ZRVarList& varList, const DOMElement& dictionary, const char* tag,
                             const FieldRules& rules, const DictionaryOptions& options)
{
    FieldRecord record;
    std::vector<double> cuts;
    std::vector<std::string> binLabels;
    for (const DOMElement* field = GetFirstChildElmt(dictionary, tag); field;
         field = GetNextSiblingElmt(*field, tag)) {
        const XMLCh* name = GetAttribute(*field, "name");
        if (!name)
            return Fail(ZRCommon::eAttributeAbsent);
        if (options.wanted && !options.wanted->Contains(name))
            continue;
        record.Reset();
        AssignUTF8(record.name, name);
        ZRStatus result = ReadField(*field, rules, record);
        if (!result.IsOK())
            return result;
        if (options.alternateInput && record.role == IZRVariable::eRoleInput)
            record.role = IZRVariable::eRoleAltInput;
        cuts.clear();
        binLabels.clear();
        if (!record.categorical && options.bins && !(*options.bins)(record.name, cuts, binLabels))
            return Fail(ZRCommon::eNoBins);
        result = AddField(varList, rules, record, cuts, binLabels, options);
        if (!result.IsOK())
            return result;
    }
    return ZRStatus();
}

} // namespace ZRXPrsUtil
