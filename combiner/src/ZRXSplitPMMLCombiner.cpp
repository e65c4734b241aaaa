// Life of the combiner and the intake of one model: parse, check, and either
// build the output document around the first model or merge a later one.
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXPrsUtil.h>

#include "ZRXOwnedMemory.h"
#include "ZRXPlatform.h"
#include "ZRXPrsUtilInternal.h"
#include "ZRXSplitInternal.h"
#include "ZRXWalk.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <algorithm>

using ZRCommon::ZRStatus;

namespace ZRXPrsUtil {

namespace SplitPMML {

const char* const kPMML = "PMML";
const char* const kHeader = "Header";
const char* const kDataDictionary = "DataDictionary";
const char* const kTransformationDictionary = "TransformationDictionary";
const char* const kDataField = "DataField";
const char* const kValue = "Value";
const char* const kDerivedField = "DerivedField";
const char* const kMiningModel = "MiningModel";
const char* const kMiningSchema = "MiningSchema";
const char* const kMiningField = "MiningField";
const char* const kSegmentation = "Segmentation";
const char* const kSegment = "Segment";
const char* const kSimplePredicate = "SimplePredicate";
const char* const kCompoundPredicate = "CompoundPredicate";
const char* const kFalse = "False";
const char* const kLocalTransformations = "LocalTransformations";
const char* const kDefineFunction = "DefineFunction";
const char* const kTaxonomy = "Taxonomy";
const NameListEntry kModelChildrenBeforeLocalTransformations[] = {
    {0, "Extension"},        {1, "MiningSchema"}, {2, "Output"}, {3, "ModelStats"},
    {4, "ModelExplanation"}, {5, "Targets"},      {0, nullptr}};
const char* const kNestedModelTags[] = {"MiningModel",     "AssociationModel",
                                        "ClusteringModel", "GeneralRegressionModel",
                                        "NaiveBayesModel", "NeuralNetwork",
                                        "RegressionModel", "RuleSetModel",
                                        "SequenceModel",   "SupportVectorMachineModel",
                                        "TextModel",       "TimeSeriesModel",
                                        "TreeModel",       nullptr};
const char* const kName = "name";
const char* const kValueAtt = "value";
const char* const kFunctionName = "functionName";
const char* const kXmlns = "xmlns";

void CollectNamedDescendants(const xercesc::DOMNode* root, const char* tag, const char* attribute,
                             std::vector<xercesc::DOMNode*>& nodes, std::vector<std::string>& texts)
{
    if (root == nullptr)
        return;
    const std::vector<XMLCh> wanted = ToUTF16(tag);
    for (ZRXNodeWalk walk(root); walk.Node() != nullptr; walk.Next()) {
        const xercesc::DOMNode* node = walk.Node();
        if (node->getNodeType() == xercesc::DOMNode::ELEMENT_NODE &&
            xercesc::XMLString::equals(node->getNodeName(), wanted.data())) {
            const XMLCh* text = GetAttribute(*node, attribute);
            if (text != nullptr) {
                nodes.push_back(const_cast<xercesc::DOMNode*>(node));
                texts.push_back(ToUTF8(text));
            }
        }
    }
}

} // namespace SplitPMML

using namespace SplitPMML;

namespace {

// One node of a parsed model made anew in `document`: an element, text,
// CDATA or comment without its children (`whole` false), any other node with
// everything below it (`whole` true). The models are read without namespaces
// (a prefix is part of a tag or attribute name, and a namespace declaration
// is an attribute like any other), so an element is made by name, with its
// attributes set by name and value: the XML library's own import makes every
// attribute a node of its own and imports its text child, each checked and
// appended, which cost about as much as the whole parse of the model. Any
// other kind of node is imported by the library.
xercesc::DOMNode* CopyNode(xercesc::DOMDocument& document, const xercesc::DOMNode* source,
                           bool& whole)
{
    whole = false;
    switch (source->getNodeType()) {
    case xercesc::DOMNode::ELEMENT_NODE: {
        xercesc::DOMElement* copy = document.createElement(source->getNodeName());
        const xercesc::DOMNamedNodeMap* attributes = source->getAttributes();
        const XMLSize_t count = attributes != nullptr ? attributes->getLength() : 0;
        for (XMLSize_t i = 0; i < count; ++i) {
            const auto* attribute = static_cast<const xercesc::DOMAttr*>(attributes->item(i));
            if (attribute->getSpecified())
                copy->setAttribute(attribute->getName(), AttributeValue(*attribute));
        }
        return copy;
    }
    case xercesc::DOMNode::TEXT_NODE: return document.createTextNode(source->getNodeValue());
    case xercesc::DOMNode::CDATA_SECTION_NODE:
        return document.createCDATASection(source->getNodeValue());
    case xercesc::DOMNode::COMMENT_NODE: return document.createComment(source->getNodeValue());
    default: whole = true; return document.importNode(source, true);
    }
}

// A copy of source in `document`, with everything below it when deep, in
// document order.
xercesc::DOMNode* CopyTree(xercesc::DOMDocument& document, const xercesc::DOMNode* source,
                           bool deep)
{
    bool whole = false;
    xercesc::DOMNode* root = CopyNode(document, source, whole);
    if (!deep || whole || root == nullptr)
        return root;
    xercesc::DOMNode* parent = root;
    for (ZRXNodeWalk walk(source); walk.Node() != nullptr;) {
        xercesc::DOMNode* copy = parent->appendChild(CopyNode(document, walk.Node(), whole));
        int depth = walk.Next(!whole);
        if (depth > 0)
            parent = copy;
        for (; depth < 0; ++depth)
            parent = parent->getParentNode();
    }
    return root;
}

} // namespace

ZRXSplitPMMLCombiner::ZRXSplitPMMLCombiner(const ZRMTD_NAMESPACE::ZRVarList& splitVars)
    : varList(splitVars), status(), modelCount(0), document(nullptr), dataDictionary(nullptr),
      miningSchema(nullptr), segmentation(nullptr), holdsXMLLibrary(false), splitVarsRead(false),
      strictPMML(false), strictOutput(false), transDictionary(nullptr), dataFieldsEnd(nullptr)
{
    ReadSplitVariables();
}

bool ZRXSplitPMMLCombiner::ReadSplitVariables()
{
    try {
        InitSplitVarMetadata(varList);
        splitVarsRead = true;
        return true;
    } catch (...) {
        // Memory ran out: the lists stay empty, and the next AddModel tries
        // again (splitVarsRead tells).
        splitVarsRead = false;
        splitVarNames.clear();
        splitVarLabels.clear();
        splitVarOptypes.clear();
        splitVarDataTypes.clear();
        splitVarValues.clear();
        return false;
    }
}

ZRXSplitPMMLCombiner::~ZRXSplitPMMLCombiner()
{
    ReleaseDocument();
}

ZRStatus ZRXSplitPMMLCombiner::AddModel(const std::string& path,
                                        const std::vector<std::string>& values)
try {
    if (path.empty() || values.empty())
        return status;
    status = ZRStatus();
    if (!splitVarsRead && !ReadSplitVariables())
        return status = ZRStatus(ZRCommon::eCannotParse, false);
    if (varList.Size() != values.size()) {
        status = ZRStatus(ZRCommon::eSplitValuesDontMatch, false);
        return status;
    }
    ZRXMLReadWrite reader;
    status = reader.ParseToDOM(path);
    if (!status.IsOK())
        return status;
    const bool first = document == nullptr;
    const OutputMark mark = MarkOutput();
    try {
        status = ParseSplitModelXML(reader.GetDocument(), values);
    } catch (...) {
        // The DOM refused an import or an append, or memory ran out: the
        // caller gets a status, and the output is as it was before the call
        // (a first model leaves nothing behind).
        if (first)
            ReleaseDocument();
        else
            RollBack(mark);
        status = ZRStatus(ZRCommon::eCannotParse, false);
    }
    touchedFields.clear();
    return status;
} catch (...) {
    // Memory ran out before the model was taken (reading the file).
    return status = ZRStatus(ZRCommon::eCannotParse, false);
}

ZRXSplitPMMLCombiner::OutputMark ZRXSplitPMMLCombiner::MarkOutput() const
{
    OutputMark mark;
    mark.fields = fieldNames.size();
    mark.miningFields = miningFieldNames.size();
    mark.models = modelCount;
    // New fields go before the first Taxonomy in the strict form, else last.
    mark.lastField = dataFieldsEnd != nullptr    ? dataFieldsEnd->getPreviousSibling()
                     : dataDictionary != nullptr ? dataDictionary->getLastChild()
                                                 : nullptr;
    mark.lastMiningField = miningSchema != nullptr ? miningSchema->getLastChild() : nullptr;
    mark.lastSegment = segmentation != nullptr ? segmentation->getLastChild() : nullptr;
    const xercesc::DOMElement* root =
        document != nullptr ? document->getDocumentElement() : nullptr;
    mark.rootAttributes = root != nullptr ? root->getAttributes()->getLength() : 0;
    mark.transDictionary = transDictionary;
    mark.lastFunction = transDictionary != nullptr ? transDictionary->getLastChild() : nullptr;
    return mark;
}

void ZRXSplitPMMLCombiner::MarkField(std::size_t field)
{
    touchedFields.push_back({field, fieldValues[field].size(), fieldNodes[field]->getLastChild()});
}

namespace {

// Takes every child after `last` (from the first if it is null) and before
// `end` (to the last if it is null) out of `parent`. The nodes stay in the
// document's memory until it is released.
void RemoveChildrenAfter(xercesc::DOMNode* parent, const xercesc::DOMNode* last,
                         const xercesc::DOMNode* end = nullptr)
{
    if (parent == nullptr)
        return;
    xercesc::DOMNode* child;
    while ((child = last != nullptr ? last->getNextSibling() : parent->getFirstChild()) !=
               nullptr &&
           child != end)
        parent->removeChild(child);
}

// Drops the names indexed at `position` or later.
void ForgetFrom(std::unordered_map<std::string, std::size_t>& index, std::size_t position)
{
    for (auto at = index.begin(); at != index.end();)
        at = at->second >= position ? index.erase(at) : std::next(at);
}

template <class List>
void Shorten(List& list, std::size_t size)
{
    if (list.size() > size)
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(size), list.end());
}

} // namespace

void ZRXSplitPMMLCombiner::RollBack(const OutputMark& mark)
{
    // Nothing here allocates: nodes are taken out of the tree and the lists
    // only shrink, so the undo itself can't fail. The fields that gained
    // Values are put back latest first, so a field marked twice ends as it
    // was at its first mark; their value indexes are made anew when needed.
    for (auto field = touchedFields.rbegin(); field != touchedFields.rend(); ++field) {
        RemoveChildrenAfter(fieldNodes[field->field], field->lastChild);
        Shorten(fieldValues[field->field], field->values);
        if (field->field < fieldValueIndexes.size()) {
            fieldValueIndexes[field->field].texts.clear();
            fieldValueIndexes[field->field].indexed = 0;
        }
    }
    touchedFields.clear();
    RemoveChildrenAfter(dataDictionary, mark.lastField, dataFieldsEnd);
    RemoveChildrenAfter(miningSchema, mark.lastMiningField);
    RemoveChildrenAfter(segmentation, mark.lastSegment);
    // The strict form: the functions and the declarations the model brought.
    // Attributes are added behind those there (the XML library keeps them in
    // their order), and the name of a removed one is the attribute's own.
    if (transDictionary != nullptr && mark.transDictionary == nullptr) {
        transDictionary->getParentNode()->removeChild(transDictionary);
        transDictionary = nullptr;
    }
    RemoveChildrenAfter(transDictionary, mark.lastFunction);
    for (auto at = functions.begin(); at != functions.end();)
        at = at->second->getParentNode() == nullptr ||
                     at->second->getParentNode()->getParentNode() == nullptr
                 ? functions.erase(at)
                 : std::next(at);
    if (xercesc::DOMElement* root = document->getDocumentElement()) {
        xercesc::DOMNamedNodeMap* attributes = root->getAttributes();
        while (attributes->getLength() > mark.rootAttributes)
            root->removeAttribute(attributes->item(attributes->getLength() - 1)->getNodeName());
    }
    // A name is indexed before it is listed, so the index is searched whole.
    ForgetFrom(fieldPositions, mark.fields);
    ForgetFrom(miningFieldPositions, mark.miningFields);
    Shorten(fieldNames, mark.fields);
    Shorten(fieldNodes, mark.fields);
    Shorten(fieldValues, mark.fields);
    Shorten(fieldValueIndexes, mark.fields);
    Shorten(miningFieldNames, mark.miningFields);
    modelCount = mark.models;
}

ZRStatus ZRXSplitPMMLCombiner::ParseSplitModelXML(xercesc::DOMDocument* parsed, const Texts& values)
{
    if (parsed == nullptr)
        return ZRStatus();
    if (document != nullptr)
        return MergeModelToMiningModel(parsed, values);

    // The first model is checked whole before anything is built, so that a
    // refused one leaves no trace and the next good one becomes the first.
    std::string function;
    const xercesc::DOMElement* pmml = GetPMML(parsed);
    const xercesc::DOMElement* model = GetNestedModel(pmml);
    ZRStatus checked = CheckFirstModel(pmml, model, function);
    Declarations carried;
    if (checked.IsOK() && strictPMML)
        checked = CheckStrictModel(pmml, model, carried);
    if (!checked.IsOK())
        return checked;
    bool created = false;
    CreateEmptyMiningModel(created);
    if (!created)
        return ZRStatus(ZRCommon::eCannotStart, false);
    functionName = function;
    strictOutput = strictPMML;
    return FillCommonToMiningModel(parsed, values);
}

ZRStatus ZRXSplitPMMLCombiner::CheckFirstModel(const xercesc::DOMElement* pmml,
                                               const xercesc::DOMElement* model,
                                               std::string& function) const
{
    if (pmml == nullptr)
        return ZRStatus(ZRCommon::eWrongRoot, false);
    if (model == nullptr)
        return ZRStatus(ZRCommon::eChildAbsent, false);
    const ZRStatus result = GetFunctionNameAtt(model, function);
    if (!result.IsOK())
        return result;
    if (function.empty())
        return ZRStatus(ZRCommon::eNotAccepted, false);
    return ZRStatus();
}

xercesc::DOMDocument* ZRXSplitPMMLCombiner::CreateEmptyMiningModel(bool& created)
{
    created = false;
    if (document != nullptr)
        return document;
    // The output document outlives every reader of the models, so the
    // combiner keeps the XML library started for as long as it exists.
    if (!ZRXPlatform::Acquire())
        return nullptr;
    holdsXMLLibrary = true;
    // The XML library's one DOM implementation, which serves "Core", taken
    // directly: asked for by feature name, the registry splits the name with
    // a tokenizer that loses memory when an allocation in it fails.
    xercesc::DOMImplementation* impl = xercesc::DOMImplementation::getImplementation();
    // The document takes its memory from a manager of its own, freed after
    // it (ZRXOwnedMemory.h): what the XML library loses on a failed
    // allocation, in the document's constructor or in a merge, goes with it.
    documentMemory.reset(new ZRXOwnedMemory());
    if (impl != nullptr)
        document = impl->createDocument(nullptr, nullptr, nullptr, documentMemory.get());
    if (document == nullptr) {
        ReleaseDocument();
        return nullptr;
    }
    created = true;
    return document;
}

ZRStatus ZRXSplitPMMLCombiner::FillCommonToMiningModel(xercesc::DOMDocument* parsed,
                                                       const Texts& values)
{
    if (document == nullptr || parsed == nullptr)
        return ZRStatus();
    modelCount = 0;
    const xercesc::DOMElement* pmml = GetPMML(parsed);
    const xercesc::DOMElement* model = GetNestedModel(pmml);

    xercesc::DOMNode* root = CopyPMML(pmml, false);
    if (root == nullptr) {
        ReleaseDocument();
        return ZRStatus(ZRCommon::eCannotParse, false);
    }
    CopyChild(GetFirstChildElmt(*pmml, kHeader), root, true);
    dataDictionary = CopyChild(GetDataDict(pmml), root, true);
    if (dataDictionary == nullptr)
        dataDictionary = AppendNewElement(root, kDataDictionary);
    const xercesc::DOMElement* transDict = GetTransDict(pmml);
    if (strictOutput) {
        // New fields go before it, so it stays the first for good.
        if (dataDictionary != nullptr)
            dataFieldsEnd =
                const_cast<xercesc::DOMElement*>(GetFirstChildElmt(*dataDictionary, kTaxonomy));
        TakeFunctions(transDict);
    }
    xercesc::DOMNode* miningModel = CreateMiningModel(root, functionName);
    miningSchema = CopyChild(GetMiningSchema(model), miningModel, true);
    if (miningSchema == nullptr)
        miningSchema = AppendNewElement(miningModel, kMiningSchema);
    InsertSplitVarsToMiningModel(dataDictionary, miningSchema);
    segmentation = CreateSegmentation(miningModel);
    InsertSegment(segmentation, model, transDict, values);
    return ZRStatus();
}

ZRStatus ZRXSplitPMMLCombiner::MergeModelToMiningModel(xercesc::DOMDocument* parsed,
                                                       const Texts& values)
{
    if (parsed == nullptr || values.empty())
        return ZRStatus();
    const xercesc::DOMElement* pmml = GetPMML(parsed);
    const xercesc::DOMElement* model = GetNestedModel(pmml);
    const ZRStatus consistent = IsConsistentFunctionName(model);
    if (!consistent.IsOK())
        return consistent;
    if (strictOutput) {
        // Every check before the first change, so that a refusal leaves the
        // output as it was.
        Declarations carried;
        const ZRStatus strict = CheckStrictModel(pmml, model, carried);
        if (!strict.IsOK())
            return strict;
        CarryDeclarations(carried);
        TakeFunctions(GetTransDict(pmml));
    }
    UpdateDataDict(GetDataDict(pmml), dataDictionary);
    UpdateMiningSchema(GetMiningSchema(model), miningSchema);
    InsertSegment(segmentation, model, GetTransDict(pmml), values);
    return ZRStatus();
}

ZRStatus ZRXSplitPMMLCombiner::ExportMiningModel(const std::string& path)
{
    if (document == nullptr)
        return status;
    try {
        // Set here rather than at each merge: the XML library's setAttribute
        // drops the old value before it makes the new one, so a merge that
        // failed there could not be undone.
        UpdateNumOfDataFields(dataDictionary, static_cast<int>(fieldNames.size()));
        status = WriteDocToPMMLFile(document, path);
    } catch (...) {
        status = ZRStatus(ZRCommon::eCannotWrite, false);
    }
    // A failed write keeps the merged document for another try.
    if (status.IsOK())
        ReleaseDocument();
    return status;
}

ZRStatus ZRXSplitPMMLCombiner::WriteDocToPMMLFile(const xercesc::DOMDocument* doc,
                                                  const std::string& path)
{
    if (doc == nullptr || path.empty())
        return ZRStatus();
    ZRXMLReadWrite writer;
    return writer.WriteFromDOM(path, doc);
}

void ZRXSplitPMMLCombiner::ReleaseDocument()
{
    if (document != nullptr)
        document->release();
    document = nullptr;
    documentMemory.reset();
    // Every node pointer and list below spoke of the released document.
    functionName.clear();
    dataDictionary = nullptr;
    miningSchema = nullptr;
    segmentation = nullptr;
    fieldNames.clear();
    fieldNodes.clear();
    fieldValues.clear();
    fieldValueIndexes.clear();
    miningFieldNames.clear();
    fieldPositions.clear();
    miningFieldPositions.clear();
    strictOutput = false;
    transDictionary = nullptr;
    dataFieldsEnd = nullptr;
    functions.clear();
    if (holdsXMLLibrary) {
        holdsXMLLibrary = false;
        ZRXPlatform::Release();
    }
}

void ZRXSplitPMMLCombiner::SetStrictPMML(bool strict)
{
    strictPMML = strict;
}

ZRStatus ZRXSplitPMMLCombiner::CheckSplitModel(const std::string& path, Texts& doubled) const
{
    doubled.clear();
    try {
        ZRXMLReadWrite reader;
        ZRStatus result = reader.ParseToDOM(path);
        if (!result.IsOK())
            return result;
        const xercesc::DOMElement* pmml = GetPMML(reader.GetDocument());
        const xercesc::DOMElement* model = GetNestedModel(pmml);
        std::string function;
        result = CheckFirstModel(pmml, model, function);
        if (!result.IsOK() || document != nullptr || strictPMML)
            return result;
        // The literal form writes each split variable beside a field of the
        // same name that the first model brings.
        std::vector<xercesc::DOMNode*> nodes;
        Texts names;
        EnumDataFields(GetDataDict(pmml), nodes, names);
        std::vector<const xercesc::DOMElement*> elements;
        ReadNamesOfMiningFields(GetMiningSchema(model), elements, names);
        for (const std::string& name : splitVarNames)
            if (!name.empty() && std::find(names.begin(), names.end(), name) != names.end())
                doubled.push_back(name);
        return result;
    } catch (...) {
        doubled.clear();
        return ZRStatus(ZRCommon::eCannotParse, false);
    }
}

int ZRXSplitPMMLCombiner::GetNModels() const
{
    return modelCount;
}

ZRStatus ZRXSplitPMMLCombiner::GetStatus() const
{
    return status;
}

void ZRXSplitPMMLCombiner::Display(std::ostream&) const {}

// ------------------------------------------------------------------ finding

const xercesc::DOMElement* ZRXSplitPMMLCombiner::GetPMML(const xercesc::DOMDocument* parsed) const
{
    return parsed != nullptr ? GetFirstChildElmt(*parsed, kPMML) : nullptr;
}

const xercesc::DOMElement*
ZRXSplitPMMLCombiner::GetNestedModel(const xercesc::DOMElement* pmml) const
{
    if (pmml == nullptr)
        return nullptr;
    for (const char* const* tag = kNestedModelTags; *tag != nullptr; ++tag) {
        if (const xercesc::DOMElement* model = GetFirstChildElmt(*pmml, *tag))
            return model;
    }
    return nullptr;
}

const xercesc::DOMElement* ZRXSplitPMMLCombiner::GetDataDict(const xercesc::DOMElement* pmml) const
{
    return pmml != nullptr ? GetFirstChildElmt(*pmml, kDataDictionary) : nullptr;
}

const xercesc::DOMElement* ZRXSplitPMMLCombiner::GetTransDict(const xercesc::DOMElement* pmml) const
{
    return pmml != nullptr ? GetFirstChildElmt(*pmml, kTransformationDictionary) : nullptr;
}

const xercesc::DOMElement*
ZRXSplitPMMLCombiner::GetMiningSchema(const xercesc::DOMElement* model) const
{
    return model != nullptr ? GetFirstChildElmt(*model, kMiningSchema) : nullptr;
}

ZRStatus ZRXSplitPMMLCombiner::IsMiningModel(const xercesc::DOMElement* model) const
{
    if (model != nullptr && TagNameEquals(*model, kMiningModel))
        return ZRStatus(ZRCommon::eIsMiningModel, false);
    return ZRStatus();
}

ZRStatus ZRXSplitPMMLCombiner::GetFunctionNameAtt(const xercesc::DOMElement* model,
                                                  std::string& out) const
{
    const ZRStatus result = IsMiningModel(model);
    if (!result.IsOK())
        return result;
    const XMLCh* value = model != nullptr ? GetAttribute(*model, kFunctionName) : nullptr;
    if (value == nullptr)
        return ZRStatus(ZRCommon::eAttributeAbsent, false);
    out = ToUTF8(value);
    return ZRStatus();
}

ZRStatus ZRXSplitPMMLCombiner::IsConsistentFunctionName(const xercesc::DOMElement* model) const
{
    if (model == nullptr || functionName.empty())
        return ZRStatus();
    std::string function;
    const ZRStatus result = GetFunctionNameAtt(model, function);
    if (!result.IsOK())
        return result;
    return function == functionName ? ZRStatus() : ZRStatus(ZRCommon::eOtherFunction, false);
}

// ------------------------------------------------------------------ copying

xercesc::DOMNode* ZRXSplitPMMLCombiner::CopyPMML(const xercesc::DOMElement* pmml, bool deep)
{
    return CopyChild(pmml, document, deep);
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::CopyChild(const xercesc::DOMNode* source,
                                                  xercesc::DOMNode* parent, bool deep,
                                                  xercesc::DOMNode* before)
{
    if (source == nullptr || parent == nullptr || document == nullptr)
        return nullptr;
    xercesc::DOMNode* copy = CopyTree(*document, source, deep);
    return copy != nullptr ? parent->insertBefore(copy, before) : nullptr;
}

xercesc::DOMElement* ZRXSplitPMMLCombiner::AppendNewElement(xercesc::DOMNode* parent,
                                                            const char* tag,
                                                            xercesc::DOMNode* before)
{
    if (parent == nullptr || document == nullptr)
        return nullptr;
    xercesc::DOMElement* element = CreateElement(*document, tag);
    if (element == nullptr)
        return nullptr;
    parent->insertBefore(element, before);
    return element;
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::CreateMiningModel(xercesc::DOMNode* parent,
                                                          const std::string& function)
{
    if (function.empty())
        return nullptr;
    xercesc::DOMElement* miningModel = AppendNewElement(parent, kMiningModel);
    if (miningModel != nullptr)
        SetAttribute(*miningModel, kFunctionName, function.c_str());
    return miningModel;
}

} // namespace ZRXPrsUtil
