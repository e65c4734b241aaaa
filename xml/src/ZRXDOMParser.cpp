#include "ZRXDOMParser.h"

#include <xercesc/util/PlatformUtils.hpp>

namespace ZRXPrsUtil {

ZRXDOMParser::ZRXDOMParser()
    : xercesc::XercesDOMParser(nullptr, &memory, nullptr), m_depth(0), m_tooDeep(false)
{
    security.setEntityExpansionLimit(xercesc::SecurityManager::ENTITY_EXPANSION_LIMIT);
    setDisableDefaultEntityResolution(true);
    setLoadExternalDTD(false);
    setCreateEntityReferenceNodes(false);
    setLoadSchema(false);
    setSecurityManager(&security);
}

ZRXDOMParser::~ZRXDOMParser() {}

void ZRXDOMParser::startDocument()
{
    m_depth = 0;
    m_tooDeep = false;
    xercesc::XercesDOMParser::startDocument();
}

void ZRXDOMParser::startElement(const xercesc::XMLElementDecl& elemDecl, const unsigned int urlId,
                                const XMLCh* const elemPrefix,
                                const xercesc::RefVectorOf<xercesc::XMLAttr>& attrList,
                                const XMLSize_t attrCount, const bool isEmpty, const bool isRoot)
{
    if (m_depth >= kMaxDepth) {
        m_tooDeep = true;
        throw ZRXTooDeep();
    }
    ++m_depth;
    // For an empty element the XML library's parser calls endElement itself,
    // which takes the level off again.
    xercesc::XercesDOMParser::startElement(elemDecl, urlId, elemPrefix, attrList, attrCount,
                                           isEmpty, isRoot);
}

void ZRXDOMParser::endElement(const xercesc::XMLElementDecl& elemDecl, const unsigned int urlId,
                              const bool isRoot, const XMLCh* const elemPrefix)
{
    if (m_depth > 0)
        --m_depth;
    xercesc::XercesDOMParser::endElement(elemDecl, urlId, isRoot, elemPrefix);
}

} // namespace ZRXPrsUtil
