// The one reader of field dictionaries, shared by the PMML, settings and
// DataModel readers; not exported. A dictionary is a list of field elements
// (DataField, DerivedField, Field), each read into a FieldRecord and added to
// a ZRVarList as one variable under the FieldRules of its document kind.
//
// A field is read in one of two ways, which give the same record:
//   - from the DOM, when the variables are asked for (ReadFieldDictionary);
//   - as the document streams, by a FieldRecorder inside the DOM parser,
//     which builds no node for the field and keeps its record in a compact
//     FieldStore (ReadFieldStore adds the variables from there).
// Both go through FieldReading, which is given a field's parts in document
// order: the field's attributes, then each element inside it.
#ifndef ZRPARSEXMLR_ZRXFIELDREADER_H
#define ZRPARSEXMLR_ZRXFIELDREADER_H

#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRVarList.h>

#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/util/RefVectorOf.hpp>

#include <cstddef>
#include <functional>
#include <memory>
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
    const XMLCh* labelAttribute; // the field's label
    const XMLCh* typeAttribute;  // required; one of `types`
    const FieldTypeWord* types;
    std::size_t typeCount;
    const XMLCh* measureAttribute;    // required; "continuous" or categorical
    const XMLCh* roleAttribute;       // null: every field is an input
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
    void Add(std::string_view text);
    const std::vector<std::string>& Texts() const { return texts; }
    std::size_t size() const { return texts.size(); }
    const std::string& operator[](std::size_t i) const { return texts[i]; }

private:
    std::string& Next();

    std::vector<std::string> texts;
    std::vector<std::string> spare;
};

// Everything one field says before it is added. The lists keep their storage
// from one field to the next (Reset).
//
// The record holds what the field says, and the rules of the reader that adds
// it judge it (Verdict): an absent required attribute, a type word, an
// Interval that is no range are noted, not refused, while the field is read.
// So a record read under the rules of one kind can be added under those of
// another that reads the same element (the DataField of PMML and of a
// settings document), as long as it was read under rules that read all that
// either one reads.
struct FieldRecord {
    std::string name;
    std::string label;
    bool nameAbsent = false;
    bool typeAbsent = false;
    bool measureAbsent = false;
    const FieldTypeWord* type = nullptr; // in the reading rules; null: not one of them
    bool fieldIntervalFault = false;     // an Interval of the field is no range
    bool extensionIntervalFault = false; // the first Interval of an Extension is none
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
    // The status of adding the field under `rules`, checked in the order the
    // field is read: no type (eAttributeAbsent), a type word the rules don't
    // take (eNotAccepted), no measure (eAttributeAbsent), an Interval the
    // rules read that is no range (eNotAccepted). The name is checked by the
    // walk. On OK, `storage` holds the rules' code for the type.
    ZRCommon::ZRStatus Verdict(const FieldRules& rules);
};

// The attributes of one element: those of a DOM element, or those the XML
// library's scanner reports with the start of an element, which are the ones
// the DOM would give it (those written, and those a DTD gives by default).
class AttributeView {
public:
    explicit AttributeView(const xercesc::DOMElement& element) : m_element(&element) {}
    AttributeView(const xercesc::RefVectorOf<xercesc::XMLAttr>& list, XMLSize_t count)
        : m_list(&list), m_count(count)
    {}
    // The value of the attribute named `name` as written (prefix included);
    // null when there is none.
    const XMLCh* Get(const XMLCh* name) const;
    // Calls visit(name, value) for every attribute.
    template <typename Visit>
    void ForEach(Visit visit) const;

private:
    const xercesc::DOMElement* m_element = nullptr;
    const xercesc::RefVectorOf<xercesc::XMLAttr>* m_list = nullptr;
    XMLSize_t m_count = 0;
};

// Reads one field into a record from its parts, given in document order: the
// field's attributes (Field), then each element inside it: a child of the
// field (Child), and each child of a child when Child asked for them
// (ChildOfChild). The name is read by the caller. Elements deeper down are
// nothing to the rules.
class FieldReading {
public:
    FieldReading(const FieldRules& rules, FieldRecord& record) : m_rules(rules), m_record(record) {}
    // The attributes of the field but its name. False when the field can't
    // be added under any rules (no type, a type word that the reading rules
    // don't know, no measure): what is inside it need not be read.
    bool Field(const AttributeView& attributes);
    // True when the children of this child are read too.
    bool Child(const XMLCh* tag, const AttributeView& attributes);
    void ChildOfChild(const XMLCh* tag, const AttributeView& attributes);

private:
    enum Open { kNothing, kValuesGroup, kExtension };
    const FieldRules& m_rules;
    FieldRecord& m_record;
    Open m_open = kNothing;
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

// The records of one document's fields, each in a few bytes beside what it
// holds: numbers as doubles, texts once as UTF-8, all in blocks that grow
// with the dictionary, so that a record costs no allocation of its own.
// Clear frees them all.
class FieldStore {
public:
    explicit FieldStore(const FieldRules& readingRules) : m_readingRules(readingRules) {}
    void Clear();
    void Add(const FieldRecord& record);
    // Reads the records back in order, each in two steps so that a record
    // that is not wanted costs only its name.
    class Cursor {
    public:
        explicit Cursor(const FieldStore& store) : m_store(store) {}
        // The next record's name, or nameAbsent, into `record` (nothing else
        // of it); false after the last.
        bool NextName(FieldRecord& record);
        // The rest of the record whose name was read last, into `record`.
        void ReadRest(FieldRecord& record);

    private:
        const FieldStore& m_store;
        std::size_t block = 0;
        const char* at = nullptr;  // the rest of the present record
        const char* end = nullptr; // the end of the present record
        unsigned flags = 0;
    };

private:
    friend class Cursor;
    struct Block {
        std::unique_ptr<char[]> bytes;
        std::size_t size;
        std::size_t used;
    };
    const FieldRules& m_readingRules;
    std::vector<Block> blocks;
    std::string scratch; // the record being written
};

// The fields that `store` holds, added as ReadFieldDictionary adds them from
// the DOM: the same calls on `varList` in the same order, and the same status.
ZRCommon::ZRStatus ReadFieldStore(ZRMTD_NAMESPACE::ZRVarList& varList, const FieldStore& store,
                                  const FieldRules& rules, const DictionaryOptions& options);

// Which fields of a document kind a DOM parser reads as the document streams
// and builds no node for: the elements of tag `field` among the children of
// the first child of tag `dictionary` of a document element of tag `root`.
struct FieldRecording {
    const XMLCh* root;
    const XMLCh* dictionary;
    const XMLCh* field;
    const FieldRules* readingRules;
};

// DataField of the DataDictionary of PMML, read under rules that read all
// that the PMML and the settings rules read (PMML's type words, which hold
// those of settings, and the Interval of settings), so that both readers
// add them.
extern const FieldRecording kPMMLFieldRecording;
// Field of the Fields of a DataModel.
extern const FieldRecording kDataModelFieldRecording;

// Follows the events of one document as a DOM parser receives them, and takes
// those of the fields that `recording` names: each such field is read into
// the store as its events come, and none of its events goes on to build a
// node. Every other event goes on.
class FieldRecorder {
public:
    explicit FieldRecorder(const FieldRecording& what);
    // A document starts: the records of the one before are freed, also of
    // one whose parse broke off; with `recordFields` false nothing is taken.
    void Reset(bool recordFields);
    bool IsActive() const { return active; }
    // An element starts; `depth` is its level (1 the document element).
    // True: it is part of a field and taken. `isEmpty`: no end will come.
    bool StartElement(const XMLCh* tag, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                      XMLSize_t attributeCount, bool isEmpty, XMLSize_t depth);
    // The element last started and not ended ends; `depth` is its level.
    // True: it was taken.
    bool EndElement(XMLSize_t depth);
    // Text, comments, processing instructions and entity references inside
    // a field are taken.
    bool InField() const { return level > 0; }
    const FieldStore& Store() const { return store; }

private:
    void EndField();

    const FieldRecording& recording;
    FieldStore store;
    FieldRecord record;
    bool active = false;
    bool rootMatches = false;
    bool dictionarySeen = false;
    bool inDictionary = false;
    bool closed = false;          // a nameless field ends what FillVarList reads
    std::size_t level = 0;        // open elements of the present field
    bool readingChildren = false; // the open child of the field wants its children
    bool readingField = false;    // the field's children are read
    FieldReading reading;
};

} // namespace ZRXPrsUtil

#endif
