// What the combiner knows of the split variables, and the Segments that
// guard each split model by a predicate on them.
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include <zrparsexmlr/ZRXPrsUtil.h>

#include "ZRXSplitInternal.h"

#include <xercesc/dom/DOM.hpp>

namespace ZRXPrsUtil {

using namespace SplitPMML;

// ---------------------------------------------------------- split variables

bool ZRXSplitPMMLCombiner::GetSplitVariableInfo(const ZRMTD_NAMESPACE::IZRVariable* var,
                                                std::string& name, std::string& label,
                                                std::string& optype, std::string& dataType) const
{
    if (var == nullptr)
        return false;
    name = var->GetName();
    label = var->GetLabel();
    switch (var->GetVarType()) {
    case ZRMTD_NAMESPACE::IZRVariable::eContinuous:
        optype = "continuous";
        dataType = "double";
        break;
    case ZRMTD_NAMESPACE::IZRVariable::eCategoricalNumeric:
        optype = "categorical";
        dataType = "double";
        break;
    case ZRMTD_NAMESPACE::IZRVariable::eCategoricalString:
        optype = "categorical";
        dataType = "string";
        break;
    default: break;
    }
    if (var->GetValueFormat() == 1)
        dataType = "integer";
    return true;
}

void ZRXSplitPMMLCombiner::InitSplitVarMetadata(const ZRMTD_NAMESPACE::ZRVarList& splitVars)
{
    for (int i = 0; i < static_cast<int>(splitVars.Size()); ++i) {
        // A variable that the list can't give keeps its place with empty
        // texts, so that entry i of every list stays that of variable i.
        const ZRMTD_NAMESPACE::IZRVariable* var = splitVars.GetVarAt(i);
        std::string name, label, optype, dataType;
        GetSplitVariableInfo(var, name, label, optype, dataType);
        splitVarNames.push_back(name);
        splitVarLabels.push_back(label);
        splitVarOptypes.push_back(optype);
        splitVarDataTypes.push_back(dataType);
        Texts texts;
        const int count = var != nullptr ? var->GetNValues() : 0;
        const ZRMTD_NAMESPACE::IZREncoder* encoder = count > 0 ? var->GetEncoder() : nullptr;
        for (int k = 0; encoder != nullptr && k < count; ++k)
            texts.push_back(encoder->GetValueText(k));
        splitVarValues.push_back(std::move(texts));
    }
}

std::string ZRXSplitPMMLCombiner::GetSplitVarName(int index) const
{
    const ZRMTD_NAMESPACE::IZRVariable* var = varList.GetVarAt(index);
    return var != nullptr ? var->GetName() : std::string();
}

// ------------------------------------------------------------------ segments

xercesc::DOMNode* ZRXSplitPMMLCombiner::CreateSegmentation(xercesc::DOMNode* miningModel)
{
    xercesc::DOMElement* element = AppendNewElement(miningModel, kSegmentation);
    if (element != nullptr)
        SetAttribute(*element, "multipleModelMethod", "selectFirst");
    return element;
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::InsertSegment(xercesc::DOMNode* segmentationNode,
                                                      const xercesc::DOMElement* model,
                                                      const xercesc::DOMElement* transDict,
                                                      const Texts& values)
{
    if (segmentationNode == nullptr || model == nullptr || values.empty())
        return nullptr;
    xercesc::DOMElement* segment = AppendNewElement(segmentationNode, kSegment);
    if (segment == nullptr)
        return nullptr;
    ++modelCount;
    // A Segment needs a predicate: one that can't be built becomes False, so
    // that the model is never chosen on a condition it does not carry.
    if (InsertPredicate(segment, values) == nullptr)
        AppendNewElement(segment, kFalse);
    xercesc::DOMNode* copy = CopyChild(model, segment, true);
    if (transDict != nullptr && strictOutput)
        PlaceTransDictInModel(transDict, copy);
    else if (transDict != nullptr)
        CopyTransDictToLocal(transDict, copy);
    return segment;
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::InsertPredicate(xercesc::DOMNode* segment,
                                                        const Texts& values)
{
    if (values.size() == 1)
        return InsertSimplePredicate(segment, 0, values[0]);
    if (values.size() > 1)
        return InsertCompoundPredicate(segment, values);
    return nullptr;
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::InsertSimplePredicate(xercesc::DOMNode* parent, int index,
                                                              const std::string& value)
{
    if (parent == nullptr || value.empty() || index < 0)
        return nullptr;
    const std::string name = GetSplitVarName(index);
    if (name.empty())
        return nullptr;
    xercesc::DOMElement* predicate = AppendNewElement(parent, kSimplePredicate);
    if (predicate != nullptr) {
        SetAttribute(*predicate, "field", name.c_str());
        SetAttribute(*predicate, "operator", "equal");
        SetAttribute(*predicate, kValueAtt, value.c_str());
    }
    return predicate;
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::InsertCompoundPredicate(xercesc::DOMNode* parent,
                                                                const Texts& values)
{
    if (parent == nullptr || values.size() < 2)
        return nullptr;
    xercesc::DOMElement* compound = AppendNewElement(parent, kCompoundPredicate);
    if (compound == nullptr)
        return nullptr;
    SetAttribute(*compound, "booleanOperator", "and");
    bool any = false;
    for (std::size_t i = 0; i < values.size(); ++i)
        any = InsertSimplePredicate(compound, static_cast<int>(i), values[i]) != nullptr || any;
    if (any)
        return compound;
    // Not one condition: an empty "and" would hold for every record.
    parent->removeChild(compound)->release();
    return nullptr;
}

xercesc::DOMNode* ZRXSplitPMMLCombiner::CopyTransDictToLocal(const xercesc::DOMElement* transDict,
                                                             xercesc::DOMNode* modelCopy)
{
    if (transDict == nullptr || modelCopy == nullptr)
        return nullptr;
    xercesc::DOMElement* local = AppendNewElement(modelCopy, kLocalTransformations);
    if (local == nullptr)
        return nullptr;
    for (const xercesc::DOMElement* derived = GetFirstChildElmt(*transDict, kDerivedField);
         derived != nullptr; derived = GetNextSiblingElmt(*derived, kDerivedField))
        CopyChild(derived, local, true);
    return local;
}

} // namespace ZRXPrsUtil
