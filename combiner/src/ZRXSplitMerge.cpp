// The merges of the split models' DataDictionary and MiningSchema into the
// output: union by name, the first definition wins, new entries in the order
// of first appearance.
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include <zrparsexmlr/ZRXPrsUtil.h>

#include "ZRXSplitInternal.h"

#include <xercesc/dom/DOM.hpp>

#include <algorithm>

namespace ZRXPrsUtil {

using namespace SplitPMML;

namespace {

xercesc::DOMElement* ToElement(xercesc::DOMNode* node)
{
    if (node == nullptr || node->getNodeType() != xercesc::DOMNode::ELEMENT_NODE)
        return nullptr;
    return static_cast<xercesc::DOMElement*>(node);
}

} // namespace

// ---------------------------------------------------------- data dictionary

void ZRXSplitPMMLCombiner::EnumDataFields(const xercesc::DOMNode* dictionary,
                                          std::vector<xercesc::DOMNode*>& nodes, Texts& names) const
{
    CollectNamedDescendants(dictionary, kDataField, kName, nodes, names);
}

void ZRXSplitPMMLCombiner::EnumValuesOfDataField(const xercesc::DOMNode* field,
                                                 std::vector<xercesc::DOMNode*>& nodes,
                                                 Texts& texts) const
{
    CollectNamedDescendants(field, kValue, kValueAtt, nodes, texts);
}

void ZRXSplitPMMLCombiner::UpdateNumOfDataFields(xercesc::DOMNode* dictionary, int count)
{
    xercesc::DOMElement* element = ToElement(dictionary);
    if (element != nullptr && count >= 0)
        SetAttribute(*element, "numberOfFields", static_cast<double>(count));
}

void ZRXSplitPMMLCombiner::IndexField(xercesc::DOMNode* node, const std::string& name)
{
    fieldPositions.emplace(name, fieldNames.size());
    fieldNames.push_back(name);
    fieldNodes.push_back(node);
}

void ZRXSplitPMMLCombiner::InsertDataFieldElem(xercesc::DOMNode* dictionary, int index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= splitVarNames.size() ||
        splitVarNames[index].empty())
        return;
    xercesc::DOMElement* field = AppendNewElement(dictionary, kDataField, dataFieldsEnd);
    if (field == nullptr)
        return;
    SetAttribute(*field, kName, splitVarNames[index].c_str());
    SetAttribute(*field, "displayName", splitVarLabels[index].c_str());
    SetAttribute(*field, "optype", splitVarOptypes[index].c_str());
    SetAttribute(*field, "dataType", splitVarDataTypes[index].c_str());
    for (const std::string& text : splitVarValues[index]) {
        if (xercesc::DOMElement* value = AppendNewElement(field, kValue))
            SetAttribute(*value, kValueAtt, text.c_str());
    }
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::InsertDataField(const xercesc::DOMNode* field,
                                                        xercesc::DOMNode* dictionary)
{
    xercesc::DOMNode* copy = CopyChild(field, dictionary, true, dataFieldsEnd);
    const XMLCh* name = copy != nullptr ? GetAttribute(*copy, kName) : nullptr;
    if (name == nullptr)
        return copy;
    IndexField(copy, ToUTF8(name));
    // The copy holds the same Values as its source, which is smaller to walk.
    std::vector<xercesc::DOMNode*> valueNodes;
    Texts texts;
    EnumValuesOfDataField(field, valueNodes, texts);
    fieldValues.push_back(std::move(texts));
    return copy;
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::InsertValueOfDataField(const xercesc::DOMNode* value,
                                                               xercesc::DOMNode* field,
                                                               Texts& fieldTexts)
{
    xercesc::DOMNode* copy = CopyChild(value, field, true);
    if (const XMLCh* text = copy != nullptr ? GetAttribute(*copy, kValueAtt) : nullptr)
        fieldTexts.push_back(ToUTF8(text));
    return copy;
}

void ZRXSplitPMMLCombiner::UpdateDataDict(const xercesc::DOMElement* modelDict,
                                          xercesc::DOMNode* dictionary)
{
    if (modelDict == nullptr || dictionary == nullptr)
        return;
    std::vector<xercesc::DOMNode*> nodes;
    Texts names;
    EnumDataFields(modelDict, nodes, names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto known = fieldPositions.find(names[i]);
        if (known == fieldPositions.end()) {
            InsertDataField(nodes[i], dictionary);
            continue;
        }
        const std::size_t p = known->second;
        std::vector<xercesc::DOMNode*> valueNodes;
        Texts texts;
        EnumValuesOfDataField(nodes[i], valueNodes, texts);
        if (texts.empty())
            continue;
        // Only the values the field had before this model count as known: a
        // value that the model lists twice and that is new comes twice. The
        // index takes them in now and the ones this model adds at its next
        // merge of the field.
        if (fieldValueIndexes.size() < fieldValues.size())
            fieldValueIndexes.resize(fieldValues.size());
        ValueIndex& index = fieldValueIndexes[p];
        const Texts& values = fieldValues[p];
        for (; index.indexed < values.size(); ++index.indexed)
            index.texts.insert(values[index.indexed]);
        bool marked = false;
        for (std::size_t j = 0; j < texts.size(); ++j) {
            if (index.texts.find(texts[j]) != index.texts.end())
                continue;
            if (!marked)
                MarkField(p);
            marked = true;
            InsertValueOfDataField(valueNodes[j], fieldNodes[p], fieldValues[p]);
        }
    }
    // numberOfFields is set by the export.
}

// ------------------------------------------------------------- mining schema

void ZRXSplitPMMLCombiner::IndexMiningField(const std::string& name)
{
    miningFieldPositions.emplace(name, miningFieldNames.size());
    miningFieldNames.push_back(name);
}

void ZRXSplitPMMLCombiner::InsertMiningFieldElem(xercesc::DOMNode* schema, int index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= splitVarNames.size() ||
        splitVarNames[index].empty())
        return;
    if (xercesc::DOMElement* field = AppendNewElement(schema, kMiningField)) {
        SetAttribute(*field, kName, splitVarNames[index].c_str());
        SetAttribute(*field, "usageType", "active");
    }
}

void ZRXSplitPMMLCombiner::InsertSplitVarsToMiningModel(xercesc::DOMNode* dictionary,
                                                        xercesc::DOMNode* schema)
{
    if (dictionary == nullptr || schema == nullptr)
        return;
    const auto* schemaElement = static_cast<const xercesc::DOMElement*>(ToElement(schema));
    // The strict form: a split variable joins a field of its name that the
    // first model brings, instead of standing beside it.
    std::vector<xercesc::DOMNode*> ownNodes;
    Texts ownNames;
    std::vector<const xercesc::DOMElement*> ownMining;
    Texts ownMiningNames;
    if (strictOutput) {
        EnumDataFields(dictionary, ownNodes, ownNames);
        ReadNamesOfMiningFields(schemaElement, ownMining, ownMiningNames);
    }
    for (int i = 0; i < static_cast<int>(varList.Size()); ++i) {
        if (!strictOutput || !MergeSplitVarIntoField(i, ownNodes, ownNames))
            InsertDataFieldElem(dictionary, i);
        const bool inSchema = strictOutput && i < static_cast<int>(splitVarNames.size()) &&
                              std::find(ownMiningNames.begin(), ownMiningNames.end(),
                                        splitVarNames[i]) != ownMiningNames.end();
        if (!inSchema)
            InsertMiningFieldElem(schema, i);
    }
    std::vector<xercesc::DOMNode*> nodes;
    Texts names;
    EnumDataFields(dictionary, nodes, names);
    for (std::size_t p = 0; p < names.size(); ++p) {
        IndexField(nodes[p], names[p]);
        std::vector<xercesc::DOMNode*> valueNodes;
        Texts texts;
        EnumValuesOfDataField(nodes[p], valueNodes, texts);
        fieldValues.push_back(std::move(texts));
    }
    UpdateNumOfDataFields(dictionary, static_cast<int>(fieldNames.size()));
    std::vector<const xercesc::DOMElement*> elements;
    Texts miningNames;
    ReadNamesOfMiningFields(schemaElement, elements, miningNames);
    for (const std::string& name : miningNames)
        IndexMiningField(name);
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::InsertMiningField(const xercesc::DOMElement* field,
                                                          xercesc::DOMNode* schema)
{
    xercesc::DOMNode* copy = CopyChild(field, schema, true);
    if (const XMLCh* name = copy != nullptr ? GetAttribute(*copy, kName) : nullptr)
        IndexMiningField(ToUTF8(name));
    return copy;
}

void ZRXSplitPMMLCombiner::ReadNamesOfMiningFields(
    const xercesc::DOMElement* schema, std::vector<const xercesc::DOMElement*>& elements,
    Texts& names) const
{
    if (schema == nullptr)
        return;
    for (const xercesc::DOMElement* field = GetFirstChildElmt(*schema, kMiningField);
         field != nullptr; field = GetNextSiblingElmt(*field, kMiningField)) {
        if (const XMLCh* name = GetAttribute(*field, kName)) {
            elements.push_back(field);
            names.push_back(ToUTF8(name));
        }
    }
}

void ZRXSplitPMMLCombiner::UpdateMiningSchema(const xercesc::DOMElement* modelSchema,
                                              xercesc::DOMNode* schema)
{
    if (modelSchema == nullptr || schema == nullptr)
        return;
    std::vector<const xercesc::DOMElement*> elements;
    Texts names;
    ReadNamesOfMiningFields(modelSchema, elements, names);
    // The index sees the names added so far in this same step, so a name
    // that the model lists twice comes once.
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (miningFieldPositions.find(names[i]) == miningFieldPositions.end())
            InsertMiningField(elements[i], schema);
    }
}

} // namespace ZRXPrsUtil
