#include "ZRXDOMParser.h"

#include "ZRXFieldReader.h"

#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace ZRXPrsUtil {

ZRXDOMParser::ZRXDOMParser()
    : xercesc::XercesDOMParser(nullptr, &memory, nullptr), m_depth(0), m_tooDeep(false),
      m_fieldsInDOM(true)
{
    security.setEntityExpansionLimit(kMaxEntityExpansions);
    setDisableDefaultEntityResolution(true);
    setLoadExternalDTD(false);
    setCreateEntityReferenceNodes(false);
    setLoadSchema(false);
    setSecurityManager(&security);
}

ZRXDOMParser::~ZRXDOMParser() {}

void ZRXDOMParser::SetFieldRecording(const FieldRecording& recording)
{
    m_fields.reset(new FieldRecorder(recording));
}

void ZRXDOMParser::SetFieldsInDOM(bool fieldsInDOM)
{
    m_fieldsInDOM = fieldsInDOM;
    if (m_fields)
        m_fields->Reset(false);
}

const FieldStore* ZRXDOMParser::RecordedFields() const
{
    return m_fields && m_fields->IsActive() ? &m_fields->Store() : nullptr;
}

void ZRXDOMParser::startDocument()
{
    m_depth = 0;
    m_tooDeep = false;
    if (m_fields)
        m_fields->Reset(!m_fieldsInDOM);
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
    if (m_fields &&
        m_fields->StartElement(elemDecl.getFullName(), attrList, attrCount, isEmpty, m_depth)) {
        if (isEmpty)
            --m_depth;
        return;
    }
    // For an empty element the XML library's parser calls endElement itself,
    // which takes the level off again.
    xercesc::XercesDOMParser::startElement(elemDecl, urlId, elemPrefix, attrList, attrCount,
                                           isEmpty, isRoot);
}

void ZRXDOMParser::endElement(const xercesc::XMLElementDecl& elemDecl, const unsigned int urlId,
                              const bool isRoot, const XMLCh* const elemPrefix)
{
    const bool taken = m_fields && m_fields->EndElement(m_depth);
    if (m_depth > 0)
        --m_depth;
    if (!taken)
        xercesc::XercesDOMParser::endElement(elemDecl, urlId, isRoot, elemPrefix);
}

// Text, comments, processing instructions and entity references inside a
// field kept out of the DOM go nowhere; an entity reference inside a field
// also ends inside it.
bool ZRXDOMParser::InRecordedField() const
{
    return m_fields && m_fields->InField();
}

void ZRXDOMParser::docCharacters(const XMLCh* const chars, const XMLSize_t length,
                                 const bool cdataSection)
{
    if (!InRecordedField())
        xercesc::XercesDOMParser::docCharacters(chars, length, cdataSection);
}

void ZRXDOMParser::ignorableWhitespace(const XMLCh* const chars, const XMLSize_t length,
                                       const bool cdataSection)
{
    if (!InRecordedField())
        xercesc::XercesDOMParser::ignorableWhitespace(chars, length, cdataSection);
}

void ZRXDOMParser::docComment(const XMLCh* const comment)
{
    if (!InRecordedField())
        xercesc::XercesDOMParser::docComment(comment);
}

void ZRXDOMParser::docPI(const XMLCh* const target, const XMLCh* const data)
{
    if (!InRecordedField())
        xercesc::XercesDOMParser::docPI(target, data);
}

void ZRXDOMParser::startEntityReference(const xercesc::XMLEntityDecl& entDecl)
{
    if (!InRecordedField())
        xercesc::XercesDOMParser::startEntityReference(entDecl);
}

void ZRXDOMParser::endEntityReference(const xercesc::XMLEntityDecl& entDecl)
{
    if (!InRecordedField())
        xercesc::XercesDOMParser::endEntityReference(entDecl);
}

} // namespace ZRXPrsUtil
