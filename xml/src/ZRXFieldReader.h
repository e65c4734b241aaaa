// The one reader of field dictionaries, shared by the PMML, settings and
// DataModel readers; not exported. A dictionary is a list of field elements
// (DataField, DerivedField, Field), each read into a FieldRecord under the
// FieldRules of its document kind and added to a ZRVarList as one variable.
#ifndef ZRPARSEXMLR_ZRXFIELDREADER_H
#define ZRPARSEXMLR_ZRXFIELDREADER_H

#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRVarList.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace ZRXPrsUtil {

// A word of a field's type attribute: whether its values are numbers, and the
// storage code given to IZRVariable::SetStorageType.
struct FieldTypeWord {
    const char* word;
    bool numeric;
    int storage;
};

// What a document kind says about its fields, and where. A null name means
// the kind has no such thing.
struct FieldRules {
    const char* labelAttribute; // the field's label
    const char* typeAttribute;  // required; one of `types`
    const FieldTypeWord* types;
    std::size_t typeCount;
    const char* measureAttribute;     // required; "continuous" or categorical
    const char* roleAttribute;        // null: every field is an input
    const NameListEntry* roles;       // role words; any other word is no role
    const XMLCh* valuesGroup;         // null: Value elements stand in the field
    const XMLCh* valueLabelAttribute; // the label of a Value
    const XMLCh* propertyAttribute;   // null: every Value is a valid value
    bool intervalInField;             // an Interval child sets the bounds
    bool intervalInExtension;         // so does the first Interval of an Extension
    bool invalidRangeExtension;       // Extension invalidRangeLower/Upper
    const XMLCh* rangeElement;        // minValue/maxValue set the bounds
    bool boundedContinuous;           // continuous fields are added with bounds
    bool setsStorage;                 // the storage code goes to the variable
};

// DataField of a PMML DataDictionary.
extern const FieldRules kPMMLDataFieldRules;
// DataField and DerivedField of a settings document.
extern const FieldRules kSettingsDataFieldRules;
extern const FieldRules kSettingsDerivedFieldRules;
// Field of a DataModel document.
extern const FieldRules kDataModelFieldRules;

// UTF-8 texts whose strings keep their storage from field to field: emptying
// the list parks its strings, adding takes them back. A long dictionary would
// otherwise allocate and free a string for every value and label it reads,
// and that churn grew faster than the dictionary.
class TextList {
public:
    void Clear();
    void Add(const XMLCh* text);
    const std::vector<std::string>& Texts() const { return texts; }
    std::size_t size() const { return texts.size(); }
    const std::string& operator[](std::size_t i) const { return texts[i]; }

private:
    std::vector<std::string> texts;
    std::vector<std::string> spare;
};

// Everything one field says before it is added. The lists keep their storage
// from one field to the next (Reset).
struct FieldRecord {
    std::string name;
    std::string label;
    bool numeric = true;
    bool categorical = true;
    int storage = 0;
    ZRMTD_NAMESPACE::IZRVariable::VariableRole role = ZRMTD_NAMESPACE::IZRVariable::eRoleInput;
    std::vector<double> validNumbers;
    TextList validStrings;
    TextList validLabels;
    std::vector<double> missingNumbers;
    TextList missingStrings;
    TextList missingLabels;
    double lower; // bounds of the values (Interval, Range)
    double upper;
    double rangeLower; // the invalid range
    double rangeUpper;

    FieldRecord() { Reset(); }
    void Reset();
};

// A set of field names, hashed, for a reader that reads only some fields: a
// dictionary of n fields against m names costs n lookups instead of n times m
// comparisons. A name is in the set exactly when FindXStrInList would find it
// in the list: each is compared as ToUTF16 gives it, up to its first zero.
class FieldNameSet {
public:
    // Made only over a parsed document: a name that is not valid UTF-8 goes
    // to the XML library's transcoder, which needs the library started.
    explicit FieldNameSet(const std::vector<std::string>& names);
    bool Contains(const XMLCh* name) const;

private:
    std::vector<std::u16string> texts;
    std::unordered_set<std::u16string_view> keys;
};

// Cut points and bin labels a continuous field gets from elsewhere in the
// document; false when it has none.
using FieldBinsLookup = std::function<bool(const std::string& name, std::vector<double>& cutPoints,
                                           std::vector<std::string>& labels)>;

// How a dictionary is read beyond its rules.
struct DictionaryOptions {
    const FieldNameSet* wanted = nullptr;  // null: every field
    const FieldBinsLookup* bins = nullptr; // null: no bins asked for
    bool alternateInput = false;           // inputs get eRoleAltInput
    bool useBins = false;                  // the binning flag and bin count of the
    int binCount = -1;                     // bounded add of a continuous field
};

// Every child element of `dictionary` with tag `tag`, in document order, read
// under `rules` and appended to `varList`. Stops at the first field that
// fails and keeps what was added before it:
//   eAttributeAbsent  no name (checked before the wanted names), or no type
//                     or measure attribute;
//   eNotAccepted      a type word not among the rules' types, or an Interval
//                     whose margin is not a number or whose left margin is
//                     above its right one;
//   eNoBins           bins asked for and none for a continuous field;
//   eVariableRefused  the list refused the variable.
// A continuous field with three cut points or more is added binned; its bin
// labels go on only when there is one per bin and the first is not "0" (bin
// numbers, which the encoder gives by itself). Value labels go on only when
// there is one per value; otherwise all are dropped. Missing values and the
// invalid range then go to the variable's encoder, and last the storage code
// to the variable.
ZRCommon::ZRStatus ReadFieldDictionary(ZRMTD_NAMESPACE::ZRVarList& varList,
                                       const xercesc::DOMElement& dictionary, const char* tag,
                                       const FieldRules& rules, const DictionaryOptions& options);

} // namespace ZRXPrsUtil

#endif
