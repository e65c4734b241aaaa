// ZRPMMLDOMParser: the scanner's events pass through ZRPMMLBodyFilter before
// the DOM parser makes nodes of them.
#include "ZRPMMLDOMParser.h"

#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace ZRXPrsUtil {

ZRPMMLDOMParser::ZRPMMLDOMParser()
    : xercesc::XercesDOMParser(nullptr, xercesc::XMLPlatformUtils::fgMemoryManager, nullptr) {
    security.setEntityExpansionLimit(xercesc::SecurityManager::ENTITY_EXPANSION_LIMIT);
    setDisableDefaultEntityResolution(true);
    setLoadExternalDTD(false);
    setSecurityManager(&security);
}

void ZRPMMLDOMParser::startDocument() {
    filter.Reset();
    XercesDOMParser::startDocument();
}

void ZRPMMLDOMParser::startElement(const xercesc::XMLElementDecl& elemDecl,
                                   const unsigned int urlId, const XMLCh* const elemPrefix,
                                   const xercesc::RefVectorOf<xercesc::XMLAttr>& attrList,
                                   const XMLSize_t attrCount, const bool isEmpty,
                                   const bool isRoot) {
    if (filter.StartElement(elemDecl.getFullName(), isEmpty))
        XercesDOMParser::startElement(elemDecl, urlId, elemPrefix, attrList, attrCount, isEmpty,
                                      isRoot);
}

void ZRPMMLDOMParser::endElement(const xercesc::XMLElementDecl& elemDecl,
                                 const unsigned int urlId, const bool isRoot,
                                 const XMLCh* const elemPrefix) {
    if (filter.EndElement())
        XercesDOMParser::endElement(elemDecl, urlId, isRoot, elemPrefix);
}

void ZRPMMLDOMParser::docCharacters(const XMLCh* const chars, const XMLSize_t length,
                                    const bool cdataSection) {
    if (filter.KeepContent())
        XercesDOMParser::docCharacters(chars, length, cdataSection);
}

void ZRPMMLDOMParser::ignorableWhitespace(const XMLCh* const chars, const XMLSize_t length,
                                          const bool cdataSection) {
    if (filter.KeepContent())
        XercesDOMParser::ignorableWhitespace(chars, length, cdataSection);
}

void ZRPMMLDOMParser::docComment(const XMLCh* const comment) {
    if (filter.KeepContent())
        XercesDOMParser::docComment(comment);
}

void ZRPMMLDOMParser::docPI(const XMLCh* const target, const XMLCh* const data) {
    if (filter.KeepContent())
        XercesDOMParser::docPI(target, data);
}

void ZRPMMLDOMParser::startEntityReference(const xercesc::XMLEntityDecl& entDecl) {
    if (filter.StartEntity(getCreateEntityReferenceNodes()))
        XercesDOMParser::startEntityReference(entDecl);
}

void ZRPMMLDOMParser::endEntityReference(const xercesc::XMLEntityDecl& entDecl) {
    if (filter.EndEntity())
        XercesDOMParser::endEntityReference(entDecl);
}

} // namespace ZRXPrsUtil
