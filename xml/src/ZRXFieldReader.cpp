// The one reader of field dictionaries: the rules of each document kind, the
// walk over a field's attributes and children, and the add to the list.
#include "ZRXFieldReader.h"

#include "ZRXPrsUtilInternal.h"

#include <zrcommonr/ZRStatusCodes.h>

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <cstring>
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

// GetDoubleAttribute on a view: -1 absent, 0 read into `value`, 1 not a
// number (`value` untouched).
int DoubleAttribute(const AttributeView& attributes, const XMLCh* name, double& value)
{
    const XMLCh* text = attributes.Get(name);
    if (!text)
        return -1;
    return ParseDouble(text, value) ? 0 : 1;
}

// A Value's three attributes in one pass over the element's attributes
// rather than a lookup by name for each: a Value is read per value of every
// field, so this is the innermost step of the dictionary walk. A Value
// without attributes adds nothing; a number that ParseDouble refuses is left
// out, and its label is kept all the same.
void ReadValue(const AttributeView& attributes, const FieldRules& rules, FieldRecord& record)
{
    const XMLCh* property = nullptr;
    const XMLCh* text = nullptr;
    const XMLCh* label = nullptr;
    attributes.ForEach([&](const XMLCh* name, const XMLCh* value) {
        if (Equals(name, u"value"))
            text = value;
        else if (Equals(name, rules.valueLabelAttribute))
            label = value;
        else if (rules.propertyAttribute && Equals(name, rules.propertyAttribute))
            property = value;
    });
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
// Interval set, so the last Interval of a field decides both margins. False
// for a margin that is no number or a left margin above the right one.
bool ReadInterval(const AttributeView& interval, FieldRecord& record)
{
    double margin = 0.0;
    switch (DoubleAttribute(interval, u"leftMargin", margin)) {
    case 0: record.lower = margin; break;
    case -1: record.lower = kLowest; break;
    default: return false;
    }
    switch (DoubleAttribute(interval, u"rightMargin", margin)) {
    case 0: record.upper = margin; break;
    case -1: record.upper = kHighest; break;
    default: return false;
    }
    return !(record.lower > record.upper);
}

// An Extension that sets one end of the invalid range; anything else about
// it is passed over.
void ReadInvalidRange(const AttributeView& extension, FieldRecord& record)
{
    double bound = 0.0;
    const XMLCh* name = extension.Get(u"name");
    if (name && DoubleAttribute(extension, u"value", bound) == 0) {
        if (XStrEqualsUTF8Str(name, "invalidRangeLower"))
            record.rangeLower = bound;
        else if (XStrEqualsUTF8Str(name, "invalidRangeUpper"))
            record.rangeUpper = bound;
    }
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

// A field read into `record`, judged under `rules` and added. `cuts` and
// `binLabels` are the caller's, kept from field to field.
ZRStatus AddRecord(ZRVarList& varList, const FieldRules& rules, FieldRecord& record,
                   const DictionaryOptions& options, std::vector<double>& cuts,
                   std::vector<std::string>& binLabels)
{
    ZRStatus result = record.Verdict(rules);
    if (!result.IsOK())
        return result;
    if (options.alternateInput && record.role == IZRVariable::eRoleInput)
        record.role = IZRVariable::eRoleAltInput;
    cuts.clear();
    binLabels.clear();
    if (!record.categorical && options.bins && !(*options.bins)(record.name, cuts, binLabels))
        return Fail(ZRCommon::eNoBins);
    return AddField(varList, rules, record, cuts, binLabels, options);
}

} // namespace

const FieldRules kPMMLDataFieldRules = {
    /* labelAttribute */ u"displayName",
    /* typeAttribute */ u"dataType",
    /* types */ kPMMLTypes,
    /* typeCount */ std::size(kPMMLTypes),
    /* measureAttribute */ u"optype",
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
    /* labelAttribute */ u"displayName",
    /* typeAttribute */ u"dataType",
    /* types */ kSettingsTypes,
    /* typeCount */ std::size(kSettingsTypes),
    /* measureAttribute */ u"optype",
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
    /* labelAttribute */ u"displayName",
    /* typeAttribute */ u"dataType",
    /* types */ kSettingsTypes,
    /* typeCount */ std::size(kSettingsTypes),
    /* measureAttribute */ u"optype",
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
    /* labelAttribute */ u"displayLabel",
    /* typeAttribute */ u"storage",
    /* types */ kDataModelStorages,
    /* typeCount */ std::size(kDataModelStorages),
    /* measureAttribute */ u"measure",
    /* roleAttribute */ u"role",
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

// The rules under which DataField elements are read as a PMML document
// streams: PMML's type words (a settings reader takes fewer of them, and
// refuses the others when it judges the record) and everything that either
// reader reads of the field.
const FieldRules kPMMLDataFieldReading = {
    /* labelAttribute */ u"displayName",
    /* typeAttribute */ u"dataType",
    /* types */ kPMMLTypes,
    /* typeCount */ std::size(kPMMLTypes),
    /* measureAttribute */ u"optype",
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

const FieldRecording kPMMLFieldRecording = {u"PMML", u"DataDictionary", u"DataField",
                                            &kPMMLDataFieldReading};
const FieldRecording kDataModelFieldRecording = {u"DataModel", u"Fields", u"Field",
                                                 &kDataModelFieldRules};

std::string& TextList::Next()
{
    if (spare.empty()) {
        texts.emplace_back();
    } else {
        texts.push_back(std::move(spare.back()));
        spare.pop_back();
    }
    return texts.back();
}

void TextList::Clear()
{
    for (std::string& text : texts)
        spare.push_back(std::move(text));
    texts.clear();
}

void TextList::Add(const XMLCh* text)
{
    AssignUTF8(Next(), text);
}

void TextList::Add(std::string_view text)
{
    Next().assign(text.data(), text.size());
}

void FieldRecord::Reset()
{
    name.clear();
    label.clear();
    nameAbsent = typeAbsent = measureAbsent = false;
    type = nullptr;
    fieldIntervalFault = extensionIntervalFault = false;
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

ZRStatus FieldRecord::Verdict(const FieldRules& rules)
{
    if (typeAbsent)
        return Fail(ZRCommon::eAttributeAbsent);
    const FieldTypeWord* word = nullptr;
    if (type && type >= rules.types && type < rules.types + rules.typeCount)
        word = type;
    for (std::size_t i = 0; type && !word && i < rules.typeCount; ++i)
        if (std::strcmp(rules.types[i].word, type->word) == 0)
            word = &rules.types[i];
    if (!word)
        return Fail(ZRCommon::eNotAccepted);
    if (measureAbsent)
        return Fail(ZRCommon::eAttributeAbsent);
    if ((fieldIntervalFault && rules.intervalInField) ||
        (extensionIntervalFault && rules.intervalInExtension))
        return Fail(ZRCommon::eNotAccepted);
    storage = word->storage;
    return ZRStatus();
}

const XMLCh* AttributeView::Get(const XMLCh* name) const
{
    if (m_element) {
        const xercesc::DOMAttr* attribute = m_element->getAttributeNode(name);
        return attribute ? AttributeValue(*attribute) : nullptr;
    }
    for (XMLSize_t i = 0; i < m_count; ++i) {
        const xercesc::XMLAttr* attribute = m_list->elementAt(i);
        if (Equals(attribute->getName(), name))
            return attribute->getValue();
    }
    return nullptr;
}

template <typename Visit>
void AttributeView::ForEach(Visit visit) const
{
    if (m_element) {
        const xercesc::DOMNamedNodeMap* attributes = m_element->getAttributes();
        for (XMLSize_t i = 0, n = attributes ? attributes->getLength() : 0; i < n; ++i) {
            const auto& attribute = static_cast<const xercesc::DOMAttr&>(*attributes->item(i));
            visit(attribute.getName(), AttributeValue(attribute));
        }
        return;
    }
    for (XMLSize_t i = 0; i < m_count; ++i) {
        const xercesc::XMLAttr* attribute = m_list->elementAt(i);
        visit(attribute->getName(), attribute->getValue());
    }
}

bool FieldReading::Field(const AttributeView& attributes)
{
    m_open = kNothing;
    if (const XMLCh* label = attributes.Get(m_rules.labelAttribute))
        AssignUTF8(m_record.label, label);
    const XMLCh* type = attributes.Get(m_rules.typeAttribute);
    if (!type) {
        m_record.typeAbsent = true;
        return false;
    }
    for (std::size_t i = 0; i < m_rules.typeCount && !m_record.type; ++i)
        if (XStrEqualsUTF8Str(type, m_rules.types[i].word))
            m_record.type = &m_rules.types[i];
    if (!m_record.type)
        return false;
    m_record.numeric = m_record.type->numeric;
    m_record.storage = m_record.type->storage;
    const XMLCh* measure = attributes.Get(m_rules.measureAttribute);
    if (!measure) {
        m_record.measureAbsent = true;
        return false;
    }
    m_record.categorical = !XStrEqualsUTF8Str(measure, "continuous");
    if (m_rules.roleAttribute) {
        const int index = FindXStrInList(attributes.Get(m_rules.roleAttribute), m_rules.roles);
        m_record.role = index >= 0
                            ? static_cast<IZRVariable::VariableRole>(m_rules.roles[index].first)
                            : IZRVariable::eRoleNone;
    }
    return true;
}

// The Value elements and, for a numeric field, the bounds and the invalid
// range. An absent or refused bound of a range element stays as it was. An
// Interval that is no range is noted and the reading goes on, as the m_rules
// that add the m_record may not read Intervals.
bool FieldReading::Child(const XMLCh* tag, const AttributeView& attributes)
{
    m_open = kNothing;
    if (Equals(tag, m_rules.valuesGroup ? m_rules.valuesGroup : u"Value")) {
        if (!m_rules.valuesGroup) {
            ReadValue(attributes, m_rules, m_record);
            return false;
        }
        m_open = kValuesGroup;
        return true;
    }
    if (!m_record.numeric)
        return false;
    if (m_rules.intervalInField && Equals(tag, u"Interval")) {
        if (!ReadInterval(attributes, m_record))
            m_record.fieldIntervalFault = true;
    } else if ((m_rules.invalidRangeExtension || m_rules.intervalInExtension) &&
               Equals(tag, u"Extension")) {
        if (m_rules.invalidRangeExtension)
            ReadInvalidRange(attributes, m_record);
        m_open = m_rules.intervalInExtension ? kExtension : kNothing;
    } else if (m_rules.rangeElement && Equals(tag, m_rules.rangeElement)) {
        DoubleAttribute(attributes, u"minValue", m_record.lower);
        DoubleAttribute(attributes, u"maxValue", m_record.upper);
    }
    return m_open != kNothing;
}

// Every Value of a values group; the first Interval of an Extension.
void FieldReading::ChildOfChild(const XMLCh* tag, const AttributeView& attributes)
{
    if (m_open == kValuesGroup && Equals(tag, u"Value")) {
        ReadValue(attributes, m_rules, m_record);
    } else if (m_open == kExtension && Equals(tag, u"Interval")) {
        m_open = kNothing;
        if (!ReadInterval(attributes, m_record))
            m_record.extensionIntervalFault = true;
    }
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
    FieldReading reading(rules, record);
    std::vector<double> cuts;
    std::vector<std::string> binLabels;
    for (const DOMElement* field = GetFirstChildElmt(dictionary, tag); field;
         field = GetNextSiblingElmt(*field, tag)) {
        const AttributeView attributes(*field);
        const XMLCh* name = attributes.Get(u"name");
        if (!name)
            return Fail(ZRCommon::eAttributeAbsent);
        if (options.wanted && !options.wanted->Contains(name))
            continue;
        record.Reset();
        AssignUTF8(record.name, name);
        if (reading.Field(attributes))
            for (const DOMElement* child = GetFirstChildElmt(*field, nullptr); child;
                 child = GetNextSiblingElmt(*child, nullptr))
                if (reading.Child(child->getTagName(), AttributeView(*child)))
                    for (const DOMElement* inner = GetFirstChildElmt(*child, nullptr); inner;
                         inner = GetNextSiblingElmt(*inner, nullptr))
                        reading.ChildOfChild(inner->getTagName(), AttributeView(*inner));
        const ZRStatus result = AddRecord(varList, rules, record, options, cuts, binLabels);
        if (!result.IsOK())
            return result;
    }
    return ZRStatus();
}

// ------------------------------------------------------------ the store
//
// A record is its length, then its flags and name, then the rest, which a
// reader skips for a field it does not want:
//
//   length  flags  [name]  type  role  label  [lower upper]  [rangeLower rangeUpper]
//   validNumbers  missingNumbers  validStrings  validLabels  missingStrings  missingLabels
//
// Sizes, counts, flags, the type (its index in the reading rules, plus one;
// 0 none) and the role are unsigned varints; a text is its length and its
// UTF-8 bytes; a number is the 8 bytes of the double; a list is its count
// and its items. The bounds and the invalid range are written only when a
// flag says they are not the open ones.

namespace {

// The flags of a record.
const unsigned kNameAbsent = 1;
const unsigned kTypeAbsent = 2;
const unsigned kMeasureAbsent = 4;
const unsigned kNumeric = 8;
const unsigned kCategorical = 16;
const unsigned kFieldIntervalFault = 32;
const unsigned kExtensionIntervalFault = 64;
const unsigned kBounds = 128;
const unsigned kInvalidRange = 256;

// The first block; each next one is twice the size of the one before, up to
// kLargestBlock, or as large as one record needs.
const std::size_t kFirstBlock = 4096;
const std::size_t kLargestBlock = std::size_t(1) << 20;

void PutSize(std::string& out, std::size_t value)
{
    while (value >= 0x80) {
        out.push_back(static_cast<char>((value & 0x7F) | 0x80));
        value >>= 7;
    }
    out.push_back(static_cast<char>(value));
}

void PutNumber(std::string& out, double value)
{
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    out.append(bytes, sizeof value);
}

void PutText(std::string& out, std::string_view text)
{
    PutSize(out, text.size());
    out.append(text.data(), text.size());
}

void PutNumbers(std::string& out, const std::vector<double>& values)
{
    PutSize(out, values.size());
    for (double value : values)
        PutNumber(out, value);
}

void PutTexts(std::string& out, const TextList& texts)
{
    PutSize(out, texts.size());
    for (const std::string& text : texts.Texts())
        PutText(out, text);
}

// The readers of the same forms; `at` moves past what they read. The store
// reads back only what it wrote itself.
std::size_t GetSize(const char*& at)
{
    std::size_t value = 0;
    for (unsigned shift = 0;; shift += 7) {
        const unsigned char byte = static_cast<unsigned char>(*at++);
        value |= static_cast<std::size_t>(byte & 0x7F) << shift;
        if (byte < 0x80)
            return value;
    }
}

double GetNumber(const char*& at)
{
    double value = 0.0;
    std::memcpy(&value, at, sizeof value);
    at += sizeof value;
    return value;
}

std::string_view GetText(const char*& at)
{
    const std::size_t size = GetSize(at);
    const std::string_view text(at, size);
    at += size;
    return text;
}

void GetNumbers(const char*& at, std::vector<double>& values)
{
    for (std::size_t count = GetSize(at); count > 0; --count)
        values.push_back(GetNumber(at));
}

void GetTexts(const char*& at, TextList& texts)
{
    for (std::size_t count = GetSize(at); count > 0; --count)
        texts.Add(GetText(at));
}

} // namespace

void FieldStore::Clear()
{
    std::vector<Block>().swap(blocks);
    std::string().swap(scratch);
}

void FieldStore::Add(const FieldRecord& record)
{
    const bool bounds = record.lower != kLowest || record.upper != kHighest;
    const bool invalidRange = record.rangeLower != kLowest || record.rangeUpper != kHighest;
    const std::pair<bool, unsigned> facts[] = {
        {record.nameAbsent, kNameAbsent},
        {record.typeAbsent, kTypeAbsent},
        {record.measureAbsent, kMeasureAbsent},
        {record.numeric, kNumeric},
        {record.categorical, kCategorical},
        {record.fieldIntervalFault, kFieldIntervalFault},
        {record.extensionIntervalFault, kExtensionIntervalFault},
        {bounds, kBounds},
        {invalidRange, kInvalidRange}};
    unsigned flags = 0;
    for (const auto& [fact, flag] : facts)
        flags |= fact ? flag : 0u;

    scratch.clear();
    PutSize(scratch, flags);
    if (!record.nameAbsent) {
        PutText(scratch, record.name);
        PutSize(scratch,
                record.type ? static_cast<std::size_t>(record.type - m_readingRules.types) + 1 : 0);
        PutSize(scratch, static_cast<std::size_t>(record.role));
        PutText(scratch, record.label);
        if (bounds) {
            PutNumber(scratch, record.lower);
            PutNumber(scratch, record.upper);
        }
        if (invalidRange) {
            PutNumber(scratch, record.rangeLower);
            PutNumber(scratch, record.rangeUpper);
        }
        PutNumbers(scratch, record.validNumbers);
        PutNumbers(scratch, record.missingNumbers);
        PutTexts(scratch, record.validStrings);
        PutTexts(scratch, record.validLabels);
        PutTexts(scratch, record.missingStrings);
        PutTexts(scratch, record.missingLabels);
    }

    char length[16];
    std::size_t lengthSize = 0;
    for (std::size_t value = scratch.size();; value >>= 7) {
        length[lengthSize++] = static_cast<char>((value & 0x7F) | (value >= 0x80 ? 0x80 : 0));
        if (value < 0x80)
            break;
    }
    const std::size_t needed = lengthSize + scratch.size();
    if (blocks.empty() || blocks.back().size - blocks.back().used < needed) {
        std::size_t size =
            blocks.empty() ? kFirstBlock : std::min(blocks.back().size * 2, kLargestBlock);
        size = std::max(size, needed);
        blocks.push_back({std::unique_ptr<char[]>(new char[size]), size, 0});
    }
    Block& block = blocks.back();
    std::memcpy(block.bytes.get() + block.used, length, lengthSize);
    std::memcpy(block.bytes.get() + block.used + lengthSize, scratch.data(), scratch.size());
    block.used += needed;
}

bool FieldStore::Cursor::NextName(FieldRecord& record)
{
    const char* from = end;
    for (;; ++block, from = nullptr) {
        if (block >= m_store.blocks.size())
            return false;
        const Block& present = m_store.blocks[block];
        if (!from)
            from = present.bytes.get();
        if (from < present.bytes.get() + present.used)
            break;
    }
    const std::size_t size = GetSize(from);
    end = from + size;
    flags = static_cast<unsigned>(GetSize(from));
    record.Reset();
    record.nameAbsent = (flags & kNameAbsent) != 0;
    if (!record.nameAbsent) {
        const std::string_view name = GetText(from);
        record.name.assign(name.data(), name.size());
    }
    at = from;
    return true;
}

void FieldStore::Cursor::ReadRest(FieldRecord& record)
{
    if (record.nameAbsent)
        return;
    const char* from = at;
    record.typeAbsent = (flags & kTypeAbsent) != 0;
    record.measureAbsent = (flags & kMeasureAbsent) != 0;
    record.numeric = (flags & kNumeric) != 0;
    record.categorical = (flags & kCategorical) != 0;
    record.fieldIntervalFault = (flags & kFieldIntervalFault) != 0;
    record.extensionIntervalFault = (flags & kExtensionIntervalFault) != 0;
    const std::size_t type = GetSize(from);
    record.type = type > 0 ? &m_store.m_readingRules.types[type - 1] : nullptr;
    record.role = static_cast<IZRVariable::VariableRole>(GetSize(from));
    const std::string_view label = GetText(from);
    record.label.assign(label.data(), label.size());
    if (flags & kBounds) {
        record.lower = GetNumber(from);
        record.upper = GetNumber(from);
    }
    if (flags & kInvalidRange) {
        record.rangeLower = GetNumber(from);
        record.rangeUpper = GetNumber(from);
    }
    GetNumbers(from, record.validNumbers);
    GetNumbers(from, record.missingNumbers);
    GetTexts(from, record.validStrings);
    GetTexts(from, record.validLabels);
    GetTexts(from, record.missingStrings);
    GetTexts(from, record.missingLabels);
}

ZRStatus ReadFieldStore(ZRVarList& varList, const FieldStore& store, const FieldRules& rules,
                        const DictionaryOptions& options)
{
    FieldRecord record;
    std::vector<double> cuts;
    std::vector<std::string> binLabels;
    FieldStore::Cursor cursor(store);
    while (cursor.NextName(record)) {
        if (record.nameAbsent)
            return Fail(ZRCommon::eAttributeAbsent);
        // The name went through UTF-8 from the document's valid UTF-16 and
        // comes back the same.
        if (options.wanted && !options.wanted->Contains(ToUTF16(record.name.c_str()).data()))
            continue;
        cursor.ReadRest(record);
        const ZRStatus result = AddRecord(varList, rules, record, options, cuts, binLabels);
        if (!result.IsOK())
            return result;
    }
    return ZRStatus();
}

// ---------------------------------------------------------- the recorder

FieldRecorder::FieldRecorder(const FieldRecording& what)
    : recording(what), store(*what.readingRules), reading(*what.readingRules, record)
{}

void FieldRecorder::Reset(bool recordFields)
{
    store.Clear();
    record.Reset();
    active = recordFields;
    rootMatches = dictionarySeen = inDictionary = closed = false;
    level = 0;
    readingChildren = readingField = false;
}

bool FieldRecorder::StartElement(const XMLCh* tag,
                                 const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                 XMLSize_t attributeCount, bool isEmpty, XMLSize_t depth)
{
    if (!active)
        return false;
    if (level > 0) {
        // Inside a field: a child of it at level 1, a child of a child at 2.
        if (level == 1 && readingField)
            readingChildren = reading.Child(tag, AttributeView(attributes, attributeCount));
        else if (level == 2 && readingChildren)
            reading.ChildOfChild(tag, AttributeView(attributes, attributeCount));
        if (!isEmpty)
            ++level;
        return true;
    }
    if (depth == 1) {
        rootMatches = Equals(tag, recording.root);
        return false;
    }
    if (depth == 2) {
        // Only the first dictionary is read; an empty one has no fields.
        if (rootMatches && !dictionarySeen && Equals(tag, recording.dictionary)) {
            dictionarySeen = true;
            inDictionary = !isEmpty;
        }
        return false;
    }
    if (depth != 3 || !inDictionary || !Equals(tag, recording.field))
        return false;
    level = 1;
    readingField = readingChildren = false;
    if (!closed) {
        record.Reset();
        const AttributeView view(attributes, attributeCount);
        if (const XMLCh* name = view.Get(u"name")) {
            AssignUTF8(record.name, name);
            readingField = reading.Field(view);
        } else {
            record.nameAbsent = true;
        }
    }
    if (isEmpty)
        EndField();
    return true;
}

bool FieldRecorder::EndElement(XMLSize_t depth)
{
    if (!active)
        return false;
    if (level == 0) {
        if (depth == 2)
            inDictionary = false;
        return false;
    }
    if (--level == 0)
        EndField();
    return true;
}

// A nameless field is where FillVarList stops (eAttributeAbsent), so the
// fields after it are taken and not read.
void FieldRecorder::EndField()
{
    level = 0;
    if (closed)
        return;
    store.Add(record);
    closed = record.nameAbsent;
}

} // namespace ZRXPrsUtil
