// The DOM parser of ZRPMMLParser: the library's parser that can leave out the
// bodies of the models as it reads. Not exported.
#ifndef ZRPARSEXMLR_ZRPMMLDOMPARSER_H
#define ZRPARSEXMLR_ZRPMMLDOMPARSER_H

#include "ZRPMMLBodyFilter.h"

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>

namespace ZRXPrsUtil {

// Holds the security manager of the parser; as its first base it outlives
// the parser part.
struct ZRPMMLSecurityHolder {
    xercesc::SecurityManager security;
};

// Set as the library's other DOM parsers are (no external entity resolved,
// no external DTD loaded, entity expansion limited; nothing else changed).
// With SetReadModelBodies(false), what ZRPMMLBodyFilter leaves out of a model
// is dropped on the scanner's events, before any node is made: its elements,
// attributes, text, comments, processing instructions and entity references
// never reach the DOM, and take no memory of the document.
class ZRPMMLDOMParser : private ZRPMMLSecurityHolder, public xercesc::XercesDOMParser {
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
