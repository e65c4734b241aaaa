// The strict PMML form of the combiner: the checks that refuse a model whose
// parts can't stand in one schema-valid output beside the models taken
// before, and the steps that put a model's functions, derived fields and
// namespace declarations where the PMML schema wants them.
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrcommonr/ZRStatusCodes.h>

#include "ZRXSplitInternal.h"
#include "ZRXWalk.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUniDefs.hpp>

#include <algorithm>

using ZRCommon::ZRStatus;

namespace ZRXPrsUtil {

using namespace SplitPMML;

namespace {

// Adds the namespace prefix of the tag or attribute name `name` to
// `prefixes`, unless it has none, it is already there, or it is xml (bound
// everywhere) or xmlns (a declaration, not a use).
void AddPrefix(const XMLCh* name, std::vector<std::string>& prefixes)
{
    if (xercesc::XMLString::indexOf(name, xercesc::chColon) <= 0)
        return;
    std::string prefix = ToUTF8(name);
    prefix.resize(prefix.find(':'));
    if (prefix != "xml" && prefix != kXmlns &&
        std::find(prefixes.begin(), prefixes.end(), prefix) == prefixes.end())
        prefixes.push_back(prefix);
}

// The prefixes that the tags and attribute names of `root` and of every
// element below it use.
void CollectPrefixes(const xercesc::DOMNode* root, std::vector<std::string>& prefixes)
{
    if (root == nullptr)
        return;
    auto visit = [&prefixes](const xercesc::DOMNode* node) {
        if (node->getNodeType() != xercesc::DOMNode::ELEMENT_NODE)
            return;
        AddPrefix(node->getNodeName(), prefixes);
        const xercesc::DOMNamedNodeMap* attributes = node->getAttributes();
        const XMLSize_t count = attributes != nullptr ? attributes->getLength() : 0;
        for (XMLSize_t i = 0; i < count; ++i)
            AddPrefix(attributes->item(i)->getNodeName(), prefixes);
    };
    visit(root);
    for (ZRXNodeWalk walk(root); walk.Node() != nullptr; walk.Next())
        visit(walk.Node());
}

xercesc::DOMElement* Mutable(const xercesc::DOMElement* element)
{
    return const_cast<xercesc::DOMElement*>(element);
}

} // namespace

ZRStatus ZRXSplitPMMLCombiner::CheckStrictModel(const xercesc::DOMElement* pmml,
                                                const xercesc::DOMElement* model,
                                                Declarations& carried) const
{
    carried.clear();
    if (pmml == nullptr)
        return ZRStatus();
    const xercesc::DOMElement* root =
        document != nullptr ? document->getDocumentElement() : nullptr;
    if (root != nullptr) {
        // An absent default namespace and an empty one are the same.
        if (!xercesc::XMLString::equals(GetAttribute(*root, kXmlns), GetAttribute(*pmml, kXmlns)))
            return ZRStatus(ZRCommon::eOtherPMMLNamespace, false);
        std::vector<std::string> prefixes;
        CollectPrefixes(model, prefixes);
        CollectPrefixes(GetDataDict(pmml), prefixes);
        CollectPrefixes(GetTransDict(pmml), prefixes);
        for (const std::string& prefix : prefixes) {
            const std::string declaration = std::string(kXmlns) + ":" + prefix;
            const XMLCh* own = GetAttribute(*pmml, declaration.c_str());
            if (own == nullptr)
                continue;
            const XMLCh* there = GetAttribute(*root, declaration.c_str());
            if (there == nullptr)
                carried.emplace_back(declaration, ToUTF8(own));
            else if (!xercesc::XMLString::equals(there, own))
                return ZRStatus(ZRCommon::ePrefixBoundOtherwise, false);
        }
    }
    // A function name stands for one definition in the output: that of the
    // models taken before, and within this model that of its first function
    // of the name.
    const xercesc::DOMElement* transDict = GetTransDict(pmml);
    std::unordered_map<std::string, const xercesc::DOMElement*> own;
    for (const xercesc::DOMElement* function =
             transDict != nullptr ? GetFirstChildElmt(*transDict, kDefineFunction) : nullptr;
         function != nullptr; function = GetNextSiblingElmt(*function, kDefineFunction)) {
        const XMLCh* name = GetAttribute(*function, kName);
        if (name == nullptr)
            continue;
        const std::string key = ToUTF8(name);
        const auto taken = functions.find(key);
        const auto mine = own.find(key);
        const xercesc::DOMElement* known = taken != functions.end() ? taken->second
                                           : mine != own.end()      ? mine->second
                                                                    : nullptr;
        if (known != nullptr && !known->isEqualNode(function))
            return ZRStatus(ZRCommon::eFunctionDefinedOtherwise, false);
        own.emplace(key, function);
    }
    return ZRStatus();
}

void ZRXSplitPMMLCombiner::CarryDeclarations(const Declarations& carried)
{
    xercesc::DOMElement* root = document != nullptr ? document->getDocumentElement() : nullptr;
    for (const auto& [name, value] : carried)
        if (root != nullptr)
            SetAttribute(*root, name.c_str(), value.c_str());
}

void ZRXSplitPMMLCombiner::TakeFunctions(const xercesc::DOMElement* transDict)
{
    if (transDict == nullptr || dataDictionary == nullptr)
        return;
    for (const xercesc::DOMElement* function = GetFirstChildElmt(*transDict, kDefineFunction);
         function != nullptr; function = GetNextSiblingElmt(*function, kDefineFunction)) {
        const XMLCh* name = GetAttribute(*function, kName);
        // A function without a name can't be called; one already there has
        // the same text (CheckStrictModel).
        const std::string key = name != nullptr ? ToUTF8(name) : std::string();
        if (name == nullptr || functions.find(key) != functions.end())
            continue;
        if (transDictionary == nullptr)
            transDictionary =
                AppendNewElement(dataDictionary->getParentNode(), kTransformationDictionary,
                                 dataDictionary->getNextSibling());
        xercesc::DOMNode* copy = CopyChild(function, transDictionary, true);
        if (copy != nullptr)
            functions.emplace(key, static_cast<const xercesc::DOMElement*>(copy));
    }
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::PlaceTransDictInModel(const xercesc::DOMElement* transDict,
                                                              xercesc::DOMNode* modelCopy)
{
    const xercesc::DOMElement* derived =
        transDict != nullptr ? GetFirstChildElmt(*transDict, kDerivedField) : nullptr;
    if (derived == nullptr || modelCopy == nullptr)
        return nullptr;
    xercesc::DOMNode* local = Mutable(GetFirstChildElmt(*modelCopy, kLocalTransformations));
    if (local == nullptr) {
        const xercesc::DOMElement* place = GetFirstChildElmt(*modelCopy, nullptr);
        while (place != nullptr &&
               FindXStrInList(place->getTagName(), kModelChildrenBeforeLocalTransformations) >= 0)
            place = GetNextSiblingElmt(*place, nullptr);
        local = AppendNewElement(modelCopy, kLocalTransformations, Mutable(place));
        if (local == nullptr)
            return nullptr;
    }
    // The dictionary's fields come before the model's own, which may build
    // on them; a name that the model derives itself keeps its definition.
    xercesc::DOMNode* modelsFirst = Mutable(GetFirstChildElmt(*local, kDerivedField));
    Texts own;
    for (const xercesc::DOMElement* field = GetFirstChildElmt(*local, kDerivedField);
         field != nullptr; field = GetNextSiblingElmt(*field, kDerivedField))
        if (const XMLCh* name = GetAttribute(*field, kName))
            own.push_back(ToUTF8(name));
    for (; derived != nullptr; derived = GetNextSiblingElmt(*derived, kDerivedField)) {
        const XMLCh* name = GetAttribute(*derived, kName);
        if (name == nullptr || std::find(own.begin(), own.end(), ToUTF8(name)) == own.end())
            CopyChild(derived, local, true, modelsFirst);
    }
    return local;
}

bool ZRXSplitPMMLCombiner::MergeSplitVarIntoField(int index,
                                                  const std::vector<xercesc::DOMNode*>& nodes,
                                                  const Texts& names)
{
    if (index < 0 || static_cast<std::size_t>(index) >= splitVarNames.size() ||
        splitVarNames[index].empty())
        return false;
    const auto at = std::find(names.begin(), names.end(), splitVarNames[index]);
    if (at == names.end())
        return false;
    xercesc::DOMNode* field = nodes[static_cast<std::size_t>(at - names.begin())];
    std::vector<xercesc::DOMNode*> valueNodes;
    Texts texts;
    EnumValuesOfDataField(field, valueNodes, texts);
    for (const std::string& text : splitVarValues[index]) {
        if (std::find(texts.begin(), texts.end(), text) != texts.end())
            continue;
        if (xercesc::DOMElement* value = AppendNewElement(field, kValue))
            SetAttribute(*value, kValueAtt, text.c_str());
        texts.push_back(text);
    }
    return true;
}

} // namespace ZRXPrsUtil
