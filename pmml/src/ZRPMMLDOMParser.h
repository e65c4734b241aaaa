// The DOM parser of ZRPMMLParser: the library's parser that can leave out the
// bodies of the models as it reads. Not exported.
#ifndef ZRPARSEXMLR_ZRPMMLDOMPARSER_H
#define ZRPARSEXMLR_ZRPMMLDOMPARSER_H

#include "ZRPMMLBodyFilter.h"
#include "ZRXDOMParser.h"

namespace ZRXPrsUtil {

// The library's DOM parser, with all its settings and limits, that with
// SetReadModelBodies(false) drops what ZRPMMLBodyFilter leaves out of a model
// on the scanner's events, before any node is made: those elements,
// attributes, text, comments and processing instructions never reach the DOM
// and take no memory of the document. The events of a left-out element go to
// no base version, so the depth limit of ZRXDOMParser counts the elements
// that are built, as it guards the walks over them; a body that is left out
// may nest deeper.
//
// It can also keep the DataField elements of the DataDictionary out of the
// DOM (kPMMLFieldRecording, SetFieldsInDOM); those events reach the filter
// first, which passes them on, as they lie outside every model.
class ZRPMMLDOMParser : public ZRXDOMParser {
public:
    ZRPMMLDOMParser();
    void SetReadModelBodies(bool readBodies) { filter.SetActive(!readBodies); }

    void startDocument() override;
    void startElement(const xercesc::XMLElementDecl& elemDecl, const unsigned int urlId,
                      const XMLCh* const elemPrefix,
                      const xercesc::RefVectorOf<xercesc::XMLAttr>& attrList,
                      const XMLSize_t attrCount, const bool isEmpty, const bool isRoot) override;
    void endElement(const xercesc::XMLElementDecl& elemDecl, const unsigned int urlId,
                    const bool isRoot, const XMLCh* const elemPrefix) override;
    void docCharacters(const XMLCh* const chars, const XMLSize_t length,
                       const bool cdataSection) override;
    void ignorableWhitespace(const XMLCh* const chars, const XMLSize_t length,
                             const bool cdataSection) override;
    void docComment(const XMLCh* const comment) override;
    void docPI(const XMLCh* const target, const XMLCh* const data) override;
    void startEntityReference(const xercesc::XMLEntityDecl& entDecl) override;
    void endEntityReference(const xercesc::XMLEntityDecl& entDecl) override;

private:
    ZRPMMLBodyFilter filter;
};

} // namespace ZRXPrsUtil

#endif
