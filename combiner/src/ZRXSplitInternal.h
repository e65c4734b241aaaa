// Tags, attribute names and fixed texts of the PMML that the split-model
// combiner reads and writes, and the DOM walks that its merges share.
#ifndef ZRPARSEXMLR_ZRXSPLITINTERNAL_H
#define ZRPARSEXMLR_ZRXSPLITINTERNAL_H

#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/util/XercesDefs.hpp>

#include <string>
#include <vector>

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace ZRXPrsUtil {
namespace SplitPMML {

extern const char* const kPMML;
extern const char* const kHeader;
extern const char* const kDataDictionary;
extern const char* const kTransformationDictionary;
extern const char* const kDataField;
extern const char* const kValue;
extern const char* const kDerivedField;
extern const char* const kMiningModel;
extern const char* const kMiningSchema;
extern const char* const kMiningField;
extern const char* const kSegmentation;
extern const char* const kSegment;
extern const char* const kSimplePredicate;
extern const char* const kCompoundPredicate;
extern const char* const kFalse;
extern const char* const kLocalTransformations;
extern const char* const kDefineFunction;
extern const char* const kTaxonomy;

// The children that a model element of PMML 4.x may hold before its
// LocalTransformations, the same in every model kind (each kind allows some
// of them): the strict form puts a LocalTransformations after the leading
// run of these. A name list, closed by a null name.
extern const NameListEntry kModelChildrenBeforeLocalTransformations[];

// The models the combiner nests, in the order a split model is searched for
// them: the first child of PMML whose tag is one of these, taken in this
// order, is the model of the document. Fewer kinds than PMML has: a model of
// another kind (a Scorecard, a NearestNeighborModel, a BaselineModel, ...) is
// not nested (CheckSplitModel: 113). Closed by a null name.
extern const char* const kNestedModelTags[];

extern const char* const kName;
extern const char* const kValueAtt;
extern const char* const kFunctionName;
extern const char* const kXmlns;

// Appends to `nodes` the elements below `root` (at any depth, `root` itself
// not included) whose tag as written equals `tag`, in document order, and
// for each that has the attribute `attribute`, with its value as UTF-8 in
// `texts`. Elements without the attribute are left out of both lists, so
// that entry i of each speaks of the same element.
void CollectNamedDescendants(const xercesc::DOMNode* root, const char* tag, const char* attribute,
                             std::vector<xercesc::DOMNode*>& nodes,
                             std::vector<std::string>& texts);

} // namespace SplitPMML
} // namespace ZRXPrsUtil

#endif
