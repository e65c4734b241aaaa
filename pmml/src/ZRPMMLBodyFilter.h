// Which events of a PMML document a DOM parser turns into nodes when the
// bodies of the models are left out. Not exported.
#ifndef ZRPARSEXMLR_ZRPMMLBODYFILTER_H
#define ZRPARSEXMLR_ZRPMMLBODYFILTER_H

#include <xercesc/util/XercesDefs.hpp>

#include <cstddef>

namespace ZRXPrsUtil {

// True for the tag of a PMML model element (TreeModel, MiningModel, ...),
// compared exactly on the tag as written.
bool IsPMMLModelTag(const XMLCh* tag);

// True for the children of a model element that are kept when its body is
// left out: MiningSchema, Output, ModelStats, ModelExplanation, Targets and
// LocalTransformations.
bool IsPMMLModelHeadTag(const XMLCh* tag);

// Follows the events of one document, in the order the parser receives them,
// and answers for each whether it goes into the DOM. While active, inside a
// document whose root is "PMML", each child element of the root whose tag is
// a model tag keeps its attributes and its head children (IsPMMLModelHeadTag),
// each of them whole; every other child of it (element, text, comment,
// processing instruction) is left out with everything inside it. Everything
// outside the models passes.
//
// `depth` is, as the parser counts it, the number of open elements that were
// built: the level of the innermost one, 0 outside the document element. The
// filter keeps count of what it leaves out, not of what passes. The library's
// parsers expand entity references into what they hold and make no node of
// them, so an entity reference counts for no level, and what it holds is
// judged element by element where it stands.
class ZRPMMLBodyFilter {
public:
    // Whether bodies are left out from the next document on.
    void SetActive(bool leaveOutBodies) { active = leaveOutBodies; }
    bool IsActive() const { return active; }
    // Called at the start of every document: forgets the one before, also
    // one whose parse ended half-way.
    void Reset()
    {
        skipped = 0;
        pmmlRoot = false;
        inModel = false;
    }

    // An element starts; `isEmpty`: the scanner reports no end of it. True:
    // build it. The DOM parser reports the end of an empty element that it
    // builds itself, from its startElement; an empty element that is left
    // out is never heard of again.
    bool StartElement(const XMLCh* tag, bool isEmpty, std::size_t depth);
    // The element last started and not ended ends. True: pass the event on.
    bool EndElement(std::size_t depth);
    // Text, a comment or a processing instruction at the present place.
    bool KeepContent(std::size_t depth) const
    {
        return skipped == 0 && !(inModel && depth == kModelDepth);
    }
    // An entity reference starts or ends: passed on outside a left-out part.
    bool StartEntity();
    bool EndEntity();

private:
    // Open elements when the children of a model are reported: the root
    // and the model.
    static const std::size_t kModelDepth = 2;

    bool active = false;
    std::size_t skipped = 0; // open elements and entity references left out
    bool pmmlRoot = false;
    bool inModel = false;
};

} // namespace ZRXPrsUtil

#endif
