// Helpers shared by the readers inside the library and not exported: the
// number rules, the vendor Extension test, and the one place where the
// library makes and runs its DOM parsers.
#ifndef ZRPARSEXMLR_ZRXPRSUTILINTERNAL_H
#define ZRPARSEXMLR_ZRXPRSUTILINTERNAL_H

#include "ZRXDOMParser.h"

#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrcommonr/ZRStatus.h>

#include <exception>
#include <string>
#include <vector>

XERCES_CPP_NAMESPACE_BEGIN
class DOMAttr;
class MemoryManager;
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace ZRXPrsUtil {

// An integer in the range of int, in the XML library's integer form (white
// space, an optional sign, decimal digits). Anything else (not an integer,
// empty, null, out of range) gives false and leaves `value` untouched. The
// range is checked here: the XML library's own conversion to int wraps
// silently ("12345678901" would give -539222987).
bool ParseInteger(const XMLCh* text, int& value);
// An XML Schema double. NaN gives ZRMV::gMissingValue; INF, -INF, a number
// too large for a double (read as an infinity), null and text that is not a
// number give false and leave `value` untouched. A number too small for a
// normal double is read as 0, as the XML library reads it. The decimal
// separator is the point whatever locale the host process has set.
bool ParseDouble(const XMLCh* text, double& value);
// White-space separated doubles. The first token that fails empties `values`
// and gives false; no token gives true and an empty list.
bool ParseDoublesList(const XMLCh* text, std::vector<double>& values);
// "extender" equals VendorExtenderId and, if `name` is not null, "name"
// equals `name`. The tag is not looked at.
bool IsVendorExtension(const xercesc::DOMElement& element, const char* name);

// The value of an attribute node, as getValue() gives it, read from its
// single text child where it has one.
const XMLCh* AttributeValue(const xercesc::DOMAttr& attribute);

// ToUTF8 of `text` into `out`, which keeps its storage: a reader that
// converts many texts into one string allocates only when a text is longer
// than any before it.
void AssignUTF8(std::string& out, const XMLCh* text);

// A UTF-8 name (or other short text) as XMLCh text, exactly as ToUTF16 gives
// it: null, non-ASCII and invalid UTF-8 text included. ASCII text shorter
// than the buffer, as every tag and attribute name of the readers is, is
// widened into the object itself; anything else goes through ToUTF16. The
// helpers look up names on every attribute read, and a vector on the heap per
// lookup was a fifth of the PMML reader's dictionary walk.
class ZRXName {
public:
    explicit ZRXName(const char* text) : m_text(m_buffer)
    {
        if (!text) {
            m_buffer[0] = 0;
            return;
        }
        for (std::size_t i = 0; i < kBufferSize; ++i) {
            const unsigned char byte = static_cast<unsigned char>(text[i]);
            if (byte >= 0x80)
                break;
            m_buffer[i] = XMLCh(byte);
            if (byte == 0)
                return;
        }
        m_heap = ToUTF16(text);
        m_text = m_heap.data();
    }
    ZRXName(const ZRXName&) = delete;
    ZRXName& operator=(const ZRXName&) = delete;

    const XMLCh* c_str() const { return m_text; }

private:
    static const std::size_t kBufferSize = 64;
    XMLCh m_buffer[kBufferSize];
    std::vector<XMLCh> m_heap;
    const XMLCh* m_text;
};

// Makes every DOM parser of the library; the caller owns it (delete).
//
// Hardened on purpose, departing from a parser left at the XML library's
// defaults: documents come from users, and at those defaults Xerces-C resolves
// external entities (a file:// entity reads any local file into the DOM, an
// http:// one fetches over the network), loads external DTDs, expands nested
// internal entities without bound (a "billion laughs" document grows past
// hundreds of megabytes), keeps entity reference nodes (copied into another
// document they lose their text) and takes any nesting (the serialiser then
// overflows the stack). ZRXDOMParser (ZRXDOMParser.h) tells what the parser
// does instead. Validation and schemas stay off, so no schema location of a
// document is ever loaded. The DOM of any document without a DOCTYPE and
// within the depth limit is exactly as before.
// Never null; may throw what the XML library throws while constructing a
// parser (OutOfMemoryException, XMLException).
ZRXDOMParser* NewDOMParser();

// Parses `source` (or the local file at `path` when `source` is null) with
// `parser`, after freeing every document the parser built before (a pointer
// into one goes stale here, whatever the outcome). `path` is a file name on
// this machine, opened and read as a stream: it is never taken for a URL, so
// "http://host/x" is the relative path "http:/host/x", not found, and nothing
// is fetched. Any failure gives status 104 and no exception leaves: an
// exception of the XML library or any other (also one thrown by the input
// stream), a document that is not well-formed, bad bytes for its encoding, an
// unknown encoding, an external entity, too many entity expansions (for all
// of these the XML library throws nothing but counts errors: the parser's
// error count is not 0, and getDocument() may hold a partial document),
// elements nested deeper than ZRXDOMParser::kMaxDepth, a file that can't be
// opened, a path that names a folder (refused before the XML library sees it,
// which would leak on it), or no document. `message` is emptied first and after a failure holds, as UTF-8,
// the text of the exception that ended the parse if it carries one, else the
// first error the XML library reported; it stays empty after a success. To
// keep that text the parser has, for the parse only, an error handler that
// records and throws nothing, so the parse itself runs as without one; the
// handler set before is put back. The parser's earlier documents are released
// before the parse. On success the document stays with the parser; after a
// failure the caller must not use the parser's document.
ZRCommon::ZRStatus ParseWithParser(xercesc::XercesDOMParser& parser,
                                   const xercesc::InputSource* source, const char* path,
                                   std::string& message);

// True when `parser` can't parse again. The XML library ends a parse that ran
// out of memory with its OutOfMemoryException and then, on purpose, leaves the
// parser marked as parsing (undoing what it had set up could need memory
// too): every later parse of that parser fails. Only a new parser helps.
bool ParserIsSpent(const xercesc::XercesDOMParser& parser);

// The memory manager that `parser` allocates through: for the library's
// parsers their own (ZRXOwnedMemory), which the sources of their parses use
// too (ZRXInputSource).
xercesc::MemoryManager* ParserMemory(const xercesc::XercesDOMParser& parser);

// Replaces `parser` (owned) by `make()` if it is spent. False, with `parser`
// as it was, when the new parser can't be made; a reader then fails the parse
// at hand with 103 and tries again at the next one.
template <class Parser, class Make>
bool RenewSpentParser(Parser*& parser, Make make)
{
    if (parser == nullptr || !ParserIsSpent(*parser))
        return true;
    Parser* fresh = nullptr;
    try {
        fresh = make();
    } catch (...) {
        return false;
    }
    delete parser;
    parser = fresh;
    return true;
}

// Puts `value` back as it was at construction when the scope is left by an
// exception, so that an operation that fails half-way (a failed allocation)
// leaves the caller's object as it found it.
template <class T>
class ZRXRestoreOnThrow {
public:
    explicit ZRXRestoreOnThrow(T& value)
        : m_value(value), m_saved(value), m_exceptions(std::uncaught_exceptions())
    {}
    ~ZRXRestoreOnThrow()
    {
        if (std::uncaught_exceptions() > m_exceptions)
            m_value = m_saved;
    }
    ZRXRestoreOnThrow(const ZRXRestoreOnThrow&) = delete;
    ZRXRestoreOnThrow& operator=(const ZRXRestoreOnThrow&) = delete;

private:
    T& m_value;
    const T m_saved;
    const int m_exceptions;
};

// Called in a handler that swallows exceptions: passes an allocation failure
// (std::bad_alloc, the XML library's OutOfMemoryException) on and returns for
// any other exception. Helpers that turn a failure into an empty or false
// result thus never turn a lack of memory into a wrong answer: it reaches the
// public operation, which reports it with its own code.
void RethrowAllocationFailure();

} // namespace ZRXPrsUtil

#endif
