// ZRPMMLParser: the document, its data dictionary and the bins of its
// transformation dictionary. The univariate statistics live in
// ZRPMMLUniStats.cpp.
#include <zrparsexmlr/ZRPMMLParser.h>

#include "ZRPMMLDOMParser.h"
#include "ZRPMMLInternal.h"
#include "ZRXPlatform.h"
#include "ZRXPrsUtilInternal.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

using ZRCommon::ZRStatus;
using ZRMTD_NAMESPACE::IZRVariable;
using ZRMTD_NAMESPACE::ZRVarList;
using xercesc::DOMElement;
using xercesc::DOMNode;

namespace ZRXPrsUtil {

namespace {

const double kLowest = std::numeric_limits<double>::lowest();
const double kHighest = std::numeric_limits<double>::max();
const IZRVariable::VariableRole kRole = IZRVariable::eRoleInput;

// The dataType words read as plain doubles; "string" is the only other word
// accepted.
const NameListEntry kNumericTypes[] = {
    {0, "double"}, {0, "float"}, {0, "integer"}, {0, "date"}, {0, "time"},
    {0, "dateTime"}, {0, "timeSeconds"},
    {0, "dateDaysSince[0]"}, {0, "dateDaysSince[1960]"},
    {0, "dateDaysSince[1970]"}, {0, "dateDaysSince[1980]"},
    {0, "dateTimeSecondsSince[0]"}, {0, "dateTimeSecondsSince[1960]"},
    {0, "dateTimeSecondsSince[1970]"}, {0, "dateTimeSecondsSince[1980]"},
    {0, nullptr}};

// Texts gathered for one field, whose strings keep their storage from field
// to field: emptying the list parks its strings, adding takes them back. A
// long dictionary would otherwise allocate and free a string for every
// value and label it reads, and that churn grew faster than the dictionary.
class TextList {
public:
    void Clear() {
        for (std::string& text : texts)
            spare.push_back(std::move(text));
        texts.clear();
    }
    void Add(const XMLCh* text) {
        if (spare.empty()) {
            texts.emplace_back();
        } else {
            texts.push_back(std::move(spare.back()));
            spare.pop_back();
        }
        AssignUTF8(texts.back(), text);
    }
    const std::vector<std::string>& Texts() const { return texts; }
    std::size_t size() const { return texts.size(); }
    const std::string& operator[](std::size_t i) const { return texts[i]; }

private:
    std::vector<std::string> texts;
    std::vector<std::string> spare;
};

// The wanted field names of FillVarList, hashed: a dictionary of n fields
// against a list of m names costs n lookups instead of n times m
// comparisons. A field is wanted exactly when FindXStrInList would find its
// name: each name is compared as ToUTF16 gives it, up to its first zero.
class WantedNames {
public:
    // Made only over a parsed document: a name that is not valid UTF-8 goes
    // to the XML library's transcoder, which needs the library started.
    explicit WantedNames(const std::vector<std::string>& names) {
        // The views point into `texts`, which is never grown past its
        // reserved size and so never moves its strings.
        texts.reserve(names.size());
        keys.reserve(names.size());
        for (const std::string& name : names) {
            const std::vector<XMLCh> wide = ToUTF16(name.c_str());
            texts.emplace_back(wide.data());
            keys.insert(texts.back());
        }
    }
    bool Contains(const XMLCh* name) const {
        return keys.find(std::u16string_view(name)) != keys.end();
    }

private:
    std::vector<std::u16string> texts;
    std::unordered_set<std::u16string_view> keys;
};

// What FillVarList gathers of one DataField before it adds the variable.
struct FieldData {
    std::string name;
    std::string displayName;
    bool numeric = true;
    bool categorical = true;
    std::vector<double> validNumbers;
    TextList validStrings;
    TextList validLabels;
    std::vector<double> missingNumbers;
    TextList missingStrings;
    TextList missingLabels;
    double rangeLower = kLowest;
    double rangeUpper = kHighest;

    // Fresh values for the next field; the lists keep their storage, so that
    // a long dictionary does not allocate them anew for every field.
    void Reset() {
        name.clear();
        displayName.clear();
        numeric = categorical = true;
        validNumbers.clear();
        validStrings.Clear();
        validLabels.Clear();
        missingNumbers.clear();
        missingStrings.Clear();
        missingLabels.Clear();
        rangeLower = kLowest;
        rangeUpper = kHighest;
    }
};

// dataType and optype of the field. 108 if one is absent, 109 for a dataType
// that is neither "string" nor one of kNumericTypes. An optype other than
// "continuous" makes the field categorical.
ZRStatus ReadFieldKind(const DOMElement& field, FieldData& data) {
    const XMLCh* dataType = GetAttribute(field, "dataType");
    if (!dataType)
        return PMMLFailure(108);
    if (XStrEqualsUTF8Str(dataType, "string"))
        data.numeric = false;
    else if (FindXStrInList(dataType, kNumericTypes) < 0)
        return PMMLFailure(109);
    const XMLCh* optype = GetAttribute(field, "optype");
    if (!optype)
        return PMMLFailure(108);
    data.categorical = !XStrEqualsUTF8Str(optype, "continuous");
    return ZRStatus();
}

void ReadValue(const DOMElement& value, FieldData& data) {
    if (!value.hasAttributes())
        return;
    // The three attributes in one pass over the element's attributes, rather
    // than a lookup by name for each: a Value is read per value of every
    // field, so this is the innermost step of the dictionary walk.
    const XMLCh* property = nullptr;
    const XMLCh* text = nullptr;
    const XMLCh* label = nullptr;
    const xercesc::DOMNamedNodeMap* attributes = value.getAttributes();
    for (XMLSize_t i = 0, count = attributes->getLength(); i < count; ++i) {
        const auto& attribute = static_cast<const xercesc::DOMAttr&>(*attributes->item(i));
        const XMLCh* name = attribute.getName();
        if (xercesc::XMLString::equals(name, u"value"))
            text = AttributeValue(attribute);
        else if (xercesc::XMLString::equals(name, u"displayValue"))
            label = AttributeValue(attribute);
        else if (xercesc::XMLString::equals(name, u"property"))
            property = AttributeValue(attribute);
    }
    const bool valid = !property || XStrEqualsUTF8Str(property, "valid");
    if (text) {
        if (data.numeric) {
            double number = 0.0;
            if (ParseDouble(text, number))
                (valid ? data.validNumbers : data.missingNumbers).push_back(number);
        } else {
            (valid ? data.validStrings : data.missingStrings).Add(text);
        }
    }
    if (label)
        (valid ? data.validLabels : data.missingLabels).Add(label);
}

// An Extension of a numeric field that sets one end of the invalid range;
// anything else about it is passed over.
void ReadRangeExtension(const DOMElement& extension, FieldData& data) {
    double bound = 0.0;
    if (GetDoubleAttribute(extension, "value", bound) != 0)
        return;
    const XMLCh* name = GetAttribute(extension, "name");
    if (!name)
        return;
    if (XStrEqualsUTF8Str(name, "invalidRangeLower"))
        data.rangeLower = bound;
    else if (XStrEqualsUTF8Str(name, "invalidRangeUpper"))
        data.rangeUpper = bound;
}

void ReadFieldChildren(const DOMElement& field, FieldData& data) {
    for (const DOMNode* child = field.getFirstChild(); child; child = child->getNextSibling()) {
        if (const DOMElement* value = AsElement(*child, "Value"))
            ReadValue(*value, data);
        else if (data.numeric)
            if (const DOMElement* extension = AsElement(*child, "Extension"))
                ReadRangeExtension(*extension, data);
    }
}

int AddCategorical(ZRVarList& varList, const FieldData& data) {
    if (data.numeric) {
        if (data.validLabels.size() == data.validNumbers.size())
            return varList.AddCatVar(data.name, data.displayName, data.validNumbers,
                                     data.validLabels.Texts(), kRole);
        return varList.AddCatVar(data.name, data.displayName, data.validNumbers, kRole);
    }
    if (data.validLabels.size() == data.validStrings.size())
        return varList.AddCatVar(data.name, data.displayName, data.validStrings.Texts(),
                                 data.validLabels.Texts(), kRole);
    return varList.AddCatVar(data.name, data.displayName, data.validStrings.Texts(), kRole);
}

// A continuous variable, binned when there are three cut points or more;
// the bin labels go on only when there is one per bin and the first is not
// "0".
int AddContinuous(ZRVarList& varList, const FieldData& data, const std::vector<double>& cuts,
                  const std::vector<std::string>& binLabels) {
    if (cuts.size() < 3)
        return varList.AddContVar(data.name, data.displayName, kRole);
    const std::vector<double> inner(cuts.begin() + 1, cuts.end() - 1);
    const int index = varList.AddContVar(data.name, data.displayName, cuts.front(),
                                         cuts.back(), inner, true, kRole);
    if (index >= 0 && binLabels.size() == inner.size() + 1 && binLabels.front() != "0")
        varList.GetEncoderAt(index)->SetBinLabels(binLabels);
    return index;
}

// Missing values and the invalid range go to the encoder of the variable
// just added. A continuous string field has none.
void FeedEncoder(ZRVarList& varList, int index, const FieldData& data) {
    ZRMTD_NAMESPACE::IZREncoder& encoder = *varList.GetEncoderAt(index);
    const std::string noLabel;
    auto labelAt = [&](std::size_t i) -> const std::string& {
        return i < data.missingLabels.size() ? data.missingLabels[i] : noLabel;
    };
    if (data.numeric) {
        for (std::size_t i = 0; i < data.missingNumbers.size(); ++i)
            encoder.AddMissing(data.missingNumbers[i], labelAt(i));
        if (data.rangeLower != kLowest || data.rangeUpper != kHighest)
            encoder.SetMissingRange(data.rangeLower, data.rangeUpper);
    } else if (data.categorical) {
        for (std::size_t i = 0; i < data.missingStrings.size(); ++i)
            encoder.AddMissing(data.missingStrings[i], labelAt(i));
    }
}

} // namespace

ZRStatus PMMLFailure(long code) {
    return ZRStatus(code, false);
}

ZRPMMLParser::ZRPMMLParser()
    : status(), parser(nullptr), xercesMessage(), document(nullptr), rootElement(nullptr),
      dataDictionary(nullptr), transDictionary(nullptr), modelElement(nullptr),
      readModelBodies(true) {
    const bool initialised = ZRXPlatform::Acquire();
    try {
        // The library's DOM parser, with its settings and limits, that can
        // leave out the bodies of the models.
        if (initialised)
            parser = new ZRPMMLDOMParser();
    } catch (...) {
        parser = nullptr;
    }
    if (!parser) {
        status = PMMLFailure(103);
        // The destructor gives the share back only for an existing parser,
        // so a share that was taken is given back here.
        if (initialised)
            ZRXPlatform::Release();
    }
}

ZRPMMLParser::~ZRPMMLParser() {
    if (parser) {
        delete parser;
        ZRXPlatform::Release();
    }
}

ZRStatus ZRPMMLParser::ParseToDOM(std::istream& stream) {
    xercesMessage.clear();
    document = nullptr;
    rootElement = dataDictionary = transDictionary = modelElement = nullptr;
    if (!parser)
        return status;
    if (auto* pmmlParser = dynamic_cast<ZRPMMLDOMParser*>(parser))
        pmmlParser->SetReadModelBodies(readModelBodies);
    try {
        ZRXInputSource source(stream);
        status = ParseWithParser(*parser, &source, nullptr, xercesMessage);
    } catch (...) {
        status = PMMLFailure(104);
    }
    if (status.IsOK()) {
        document = parser->getDocument();
        if (!document)
            status = PMMLFailure(104);
    }
    if (status.IsOK()) {
        const DOMElement* root = document->getDocumentElement();
        if (!root || !TagNameEquals(*root, "PMML"))
            status = PMMLFailure(105);
        else
            rootElement = root;
    }
    if (status.IsOK()) {
        dataDictionary = GetFirstChildElmt(*rootElement, "DataDictionary");
        if (!dataDictionary)
            status = PMMLFailure(106);
        else
            transDictionary = GetFirstChildElmt(*rootElement, "TransformationDictionary");
    }
    if (!status.IsOK()) {
        document = nullptr;
        rootElement = dataDictionary = transDictionary = modelElement = nullptr;
    }
    return status;
}

ZRStatus ZRPMMLParser::GetStatus() const {
    return status;
}

std::string ZRPMMLParser::GetXercesMessage() const {
    return xercesMessage;
}

const DOMElement* ZRPMMLParser::GetRootElement() const {
    return rootElement;
}

void ZRPMMLParser::SetReadModelBodies(bool readBodies) {
    readModelBodies = readBodies;
}

bool ZRPMMLParser::GetReadModelBodies() const {
    return readModelBodies;
}

bool ZRPMMLParser::SetModelElmt(const DOMElement& model) {
    if (!status.IsOK() || !document)
        return false;
    modelElement = &model;
    return true;
}

ZRStatus ZRPMMLParser::FillVarList(ZRVarList& varList, const std::vector<std::string>& wantedFields,
                                   bool useBins) const {
    ZRStatus result = status;
    if (result.IsOK() && !document)
        result = PMMLFailure(107);
    const std::unique_ptr<const WantedNames> wanted(
        result.IsOK() && !wantedFields.empty() ? new WantedNames(wantedFields) : nullptr);
    FieldData data;
    std::vector<double> cuts;
    std::vector<std::string> binLabels;
    for (const DOMElement* field = result.IsOK() ? GetFirstChildElmt(*dataDictionary, "DataField")
                                                 : nullptr;
         field; field = GetNextSiblingElmt(*field, "DataField")) {
        const XMLCh* name = GetAttribute(*field, "name");
        if (!name) {
            result = PMMLFailure(108);
            break;
        }
        if (wanted && !wanted->Contains(name))
            continue;
        data.Reset();
        AssignUTF8(data.name, name);
        if (const XMLCh* displayName = GetAttribute(*field, "displayName"))
            AssignUTF8(data.displayName, displayName);
        result = ReadFieldKind(*field, data);
        if (!result.IsOK())
            break;
        ReadFieldChildren(*field, data);

        cuts.clear();
        binLabels.clear();
        if (!data.categorical && useBins &&
            (!transDictionary || !SetBinsFrTransDict(data.name, cuts, binLabels))) {
            result = PMMLFailure(110);
            break;
        }
        const int index = data.categorical ? AddCategorical(varList, data)
                                           : AddContinuous(varList, data, cuts, binLabels);
        if (index < 0) {
            result = PMMLFailure(111);
            break;
        }
        FeedEncoder(varList, index, data);
    }
    return result;
}

bool ZRPMMLParser::SetBinsFrTransDict(const std::string& fieldName, std::vector<double>& cutPoints,
                                      std::vector<std::string>& binValues) const {
    cutPoints.clear();
    binValues.clear();
    if (!transDictionary)
        return false;
    const std::vector<XMLCh> wanted = ToUTF16(fieldName.c_str());
    const DOMElement* discretize = nullptr;
    for (const DOMNode* derived = transDictionary->getFirstChild(); derived && !discretize;
         derived = derived->getNextSibling()) {
        if (!AsElement(*derived, "DerivedField"))
            continue;
        for (const DOMNode* child = derived->getFirstChild(); child && !discretize;
             child = child->getNextSibling()) {
            const DOMElement* candidate = AsElement(*child, "Discretize");
            const XMLCh* field = candidate ? GetAttribute(*candidate, "field") : nullptr;
            if (field && xercesc::XMLString::equals(field, wanted.data()))
                discretize = candidate;
        }
    }
    if (!discretize)
        return false;

    // The lower bound comes from the first Interval of the whole Discretize;
    // until it is seen the first cut point holds a place.
    cutPoints.push_back(0.0);
    bool firstInterval = true;
    for (const DOMNode* child = discretize->getFirstChild(); child; child = child->getNextSibling()) {
        const DOMElement* bin = AsElement(*child, "DiscretizeBin");
        if (!bin)
            continue;
        if (const XMLCh* binValue = GetAttribute(*bin, "binValue"))
            binValues.push_back(ToUTF8(binValue));
        for (const DOMNode* node = bin->getFirstChild(); node; node = node->getNextSibling()) {
            const DOMElement* interval = AsElement(*node, "Interval");
            if (!interval)
                continue;
            double margin = kHighest;
            if (GetDoubleAttribute(*interval, "rightMargin", margin) != 0)
                margin = kHighest;
            cutPoints.push_back(margin);
            if (firstInterval) {
                firstInterval = false;
                if (GetDoubleAttribute(*interval, "leftMargin", margin) != 0)
                    margin = kLowest;
                cutPoints.front() = margin;
            }
        }
    }
    return true;
}

} // namespace ZRXPrsUtil
