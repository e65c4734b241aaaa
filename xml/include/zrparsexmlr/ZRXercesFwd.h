// The XML library's classes that the public headers name only through
// pointers and references, declared once for all of them: a user of the
// public API does not need the XML library's DOM headers to include ours.
#ifndef ZRPARSEXMLR_ZRXERCESFWD_H
#define ZRPARSEXMLR_ZRXERCESFWD_H

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class BinInputStream;
class DOMDocument;
class DOMElement;
class DOMNode;
class XMLTranscoder;
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

#endif
