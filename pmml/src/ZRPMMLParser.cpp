// ZRPMMLParser: the document, its data dictionary and the bins of its
// transformation dictionary. The univariate statistics live in
// ZRPMMLUniStats.cpp.
#include <zrparsexmlr/ZRPMMLParser.h>

#include "ZRPMMLDOMParser.h"
#include "ZRPMMLInternal.h"
#include "ZRXFieldReader.h"
#include <zrparsexmlr/ZRXPlatformShare.h>
#include "ZRXPrsUtilInternal.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <limits>
#include <memory>
#include <string>

using xercesc::DOMElement;
using xercesc::DOMNode;
using ZRCommon::ZRStatus;
using ZRMTD_NAMESPACE::ZRVarList;

namespace ZRXPrsUtil {

namespace {

const double kLowest = std::numeric_limits<double>::lowest();
const double kHighest = std::numeric_limits<double>::max();

} // namespace

ZRStatus PMMLFailure(ZRCommon::StatusCode code)
{
    return ZRStatus(code, false);
}

const FieldStore* RecordedFields(const xercesc::XercesDOMParser* parser)
{
    const auto* ours = dynamic_cast<const ZRXDOMParser*>(parser);
    return ours ? ours->RecordedFields() : nullptr;
}

void ForgetRecordedFields(xercesc::XercesDOMParser* parser)
{
    if (auto* ours = dynamic_cast<ZRXDOMParser*>(parser))
        ours->SetFieldsInDOM(true);
}

ZRPMMLParser::ZRPMMLParser()
    : share(), status(), parser(nullptr), xercesMessage(), document(nullptr), rootElement(nullptr),
      dataDictionary(nullptr), transDictionary(nullptr), modelElement(nullptr),
      readModelBodies(true), fieldsInDOM(true)
{
    try {
        // The library's DOM parser, with its settings and limits, that can
        // leave out the bodies of the models.
        if (share.IsHeld())
            parser = new ZRPMMLDOMParser();
    } catch (...) {
        parser = nullptr;
    }
    if (!parser)
        status = PMMLFailure(ZRCommon::eCannotStart);
}

ZRPMMLParser::~ZRPMMLParser()
{
    delete parser;
}

ZRStatus ZRPMMLParser::ParseToDOM(std::istream& stream)
try {
    xercesMessage.clear();
    document = nullptr;
    rootElement = dataDictionary = transDictionary = modelElement = nullptr;
    if (!parser)
        return status;
    if (!RenewSpentParser(parser, [] { return new ZRPMMLDOMParser(); }))
        return status = PMMLFailure(ZRCommon::eCannotStart);
    if (auto* pmmlParser = dynamic_cast<ZRPMMLDOMParser*>(parser)) {
        pmmlParser->SetReadModelBodies(readModelBodies);
        pmmlParser->SetFieldsInDOM(fieldsInDOM);
    }
    try {
        ZRXInputSource source(stream, ParserMemory(*parser));
        status = ParseWithParser(*parser, &source, nullptr, xercesMessage);
    } catch (...) {
        status = PMMLFailure(ZRCommon::eCannotParse);
    }
    if (status.IsOK()) {
        document = parser->getDocument();
        if (!document)
            status = PMMLFailure(ZRCommon::eCannotParse);
    }
    if (status.IsOK()) {
        const DOMElement* root = document->getDocumentElement();
        if (!root || !TagNameEquals(*root, "PMML"))
            status = PMMLFailure(ZRCommon::eWrongRoot);
        else
            rootElement = root;
    }
    if (status.IsOK()) {
        dataDictionary = GetFirstChildElmt(*rootElement, "DataDictionary");
        if (!dataDictionary)
            status = PMMLFailure(ZRCommon::eNoDataDictionary);
        else
            transDictionary = GetFirstChildElmt(*rootElement, "TransformationDictionary");
    }
    if (!status.IsOK()) {
        document = nullptr;
        rootElement = dataDictionary = transDictionary = modelElement = nullptr;
        ForgetRecordedFields(parser);
    }
    return status;
} catch (...) {
    document = nullptr;
    rootElement = dataDictionary = transDictionary = modelElement = nullptr;
    return status = PMMLFailure(ZRCommon::eCannotParse);
}

ZRStatus ZRPMMLParser::GetStatus() const
{
    return status;
}

std::string ZRPMMLParser::GetXercesMessage() const
{
    try {
        return xercesMessage;
    } catch (...) {
        return std::string();
    }
}

const DOMElement* ZRPMMLParser::GetRootElement() const
{
    return rootElement;
}

void ZRPMMLParser::SetReadModelBodies(bool readBodies)
{
    readModelBodies = readBodies;
}

bool ZRPMMLParser::GetReadModelBodies() const
{
    return readModelBodies;
}

void ZRPMMLParser::SetFieldsInDOM(bool inDOM)
{
    fieldsInDOM = inDOM;
}

bool ZRPMMLParser::GetFieldsInDOM() const
{
    return fieldsInDOM;
}

bool ZRPMMLParser::SetModelElmt(const DOMElement& model)
{
    if (!status.IsOK() || !document)
        return false;
    modelElement = &model;
    return true;
}

ZRStatus ZRPMMLParser::FillVarList(ZRVarList& varList, const std::vector<std::string>& wantedFields,
                                   bool useBins) const
try {
    ZRStatus result = status;
    if (result.IsOK() && !document)
        result = PMMLFailure(ZRCommon::eNoDocument);
    if (!result.IsOK())
        return result;
    const std::unique_ptr<const FieldNameSet> wanted(
        wantedFields.empty() ? nullptr : new FieldNameSet(wantedFields));
    const FieldBinsLookup bins = [this](const std::string& name, std::vector<double>& cuts,
                                        std::vector<std::string>& labels) {
        return transDictionary && SetBinsFrTransDict(name, cuts, labels);
    };
    DictionaryOptions options;
    options.wanted = wanted.get();
    options.bins = useBins ? &bins : nullptr;
    if (const FieldStore* fields = RecordedFields(parser))
        return ReadFieldStore(varList, *fields, kPMMLDataFieldRules, options);
    return ReadFieldDictionary(varList, *dataDictionary, "DataField", kPMMLDataFieldRules, options);
} catch (...) {
    return PMMLFailure(ZRCommon::eOutOfMemory);
}

bool ZRPMMLParser::SetBinsFrTransDict(const std::string& fieldName, std::vector<double>& cutPoints,
                                      std::vector<std::string>& binValues) const
{
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
    for (const DOMNode* child = discretize->getFirstChild(); child;
         child = child->getNextSibling()) {
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
