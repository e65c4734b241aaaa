// ZRPMMLDOMParser: the scanner's events pass through ZRPMMLBodyFilter before
// the DOM parser makes nodes of them.
#include "ZRPMMLDOMParser.h"

#include "ZRXFieldReader.h"

#include <xercesc/framework/XMLElementDecl.hpp>

namespace ZRXPrsUtil {

ZRPMMLDOMParser::ZRPMMLDOMParser()
{
    SetFieldRecording(kPMMLFieldRecording);
}

void ZRPMMLDOMParser::startDocument()
{
    filter.Reset();
    ZRXDOMParser::startDocument();
}

void ZRPMMLDOMParser::startElement(const xercesc::XMLElementDecl& elemDecl,
                                   const unsigned int urlId, const XMLCh* const elemPrefix,
                                   const xercesc::RefVectorOf<xercesc::XMLAttr>& attrList,
                                   const XMLSize_t attrCount, const bool isEmpty, const bool isRoot)
{
    if (filter.StartElement(elemDecl.getFullName(), isEmpty, Depth()))
        ZRXDOMParser::startElement(elemDecl, urlId, elemPrefix, attrList, attrCount, isEmpty,
                                   isRoot);
}

void ZRPMMLDOMParser::endElement(const xercesc::XMLElementDecl& elemDecl, const unsigned int urlId,
                                 const bool isRoot, const XMLCh* const elemPrefix)
{
    if (filter.EndElement(Depth()))
        ZRXDOMParser::endElement(elemDecl, urlId, isRoot, elemPrefix);
}

void ZRPMMLDOMParser::docCharacters(const XMLCh* const chars, const XMLSize_t length,
                                    const bool cdataSection)
{
    if (filter.KeepContent(Depth()))
        ZRXDOMParser::docCharacters(chars, length, cdataSection);
}

void ZRPMMLDOMParser::ignorableWhitespace(const XMLCh* const chars, const XMLSize_t length,
                                          const bool cdataSection)
{
    if (filter.KeepContent(Depth()))
        ZRXDOMParser::ignorableWhitespace(chars, length, cdataSection);
}

void ZRPMMLDOMParser::docComment(const XMLCh* const comment)
{
    if (filter.KeepContent(Depth()))
        ZRXDOMParser::docComment(comment);
}

void ZRPMMLDOMParser::docPI(const XMLCh* const target, const XMLCh* const data)
{
    if (filter.KeepContent(Depth()))
        ZRXDOMParser::docPI(target, data);
}

void ZRPMMLDOMParser::startEntityReference(const xercesc::XMLEntityDecl& entDecl)
{
    if (filter.StartEntity())
        ZRXDOMParser::startEntityReference(entDecl);
}

void ZRPMMLDOMParser::endEntityReference(const xercesc::XMLEntityDecl& entDecl)
{
    if (filter.EndEntity())
        ZRXDOMParser::endEntityReference(entDecl);
}

} // namespace ZRXPrsUtil
