// ZRXDOMParser: the DOM parser of every reader of the library. Internal, not
// exported; made only by NewDOMParser (ZRXPrsUtilInternal.h).
#ifndef ZRPARSEXMLR_ZRXDOMPARSER_H
#define ZRPARSEXMLR_ZRXDOMPARSER_H

#include "ZRXOwnedMemory.h"

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>

#include <memory>

namespace ZRXPrsUtil {

class FieldRecorder;
class FieldStore;
struct FieldRecording;

namespace Detail {

// Holds the security manager of a parser. As the first base of the parser it
// is built before the parser and destroyed after it, so that the parser never
// points at a dead security manager.
struct ZRXSecurityHolder {
    xercesc::SecurityManager security;
};

// Holds the memory of a parser and its documents (ZRXOwnedMemory.h), built
// first and destroyed last, for the same reason.
struct ZRXMemoryHolder {
    ZRXOwnedMemory memory;
};

} // namespace Detail

// A DOM parser hardened for documents that come from users:
//   - it resolves no external entity (a document that uses one fails to
//     parse), loads no external DTD (it is skipped and the parse goes on) and
//     stops a document that expands entities of its internal DTD more than
//     kMaxEntityExpansions times. Each expansion costs the XML library a
//     reader of some 160 KB, so the library's own default of 50,000 lets a
//     hostile document of a few hundred bytes churn through 8 GB of memory
//     before it is refused (minutes under a memory checker); no document of
//     ours needs more than a handful of expansions;
//   - it expands every entity reference into its text (no entity reference
//     node is made), so that nodes copied out of the document mean the same in
//     a document without the DTD;
//   - it refuses a document nested deeper than kMaxDepth elements: the parse
//     stops at the first element past the limit (the XML library's scanner
//     reads nesting without recursion, but its serialiser, its deep copy and
//     the library's own walks recurse once per level). The document element
//     is level 1.
//
// The limit: real PMML trees reach some hundreds of levels, and the combiner
// puts a model 3 levels deeper. The deepest user of the stack is the XML
// library's serialiser (the combiner's export, ZRXMLReadWrite's write), about
// 128 bytes a level, the same in the AddressSanitizer build as the XML
// library is not instrumented; the readers' own walks do not recurse. At
// 2,000 levels the deepest operation takes about 265 KB of stack, a quarter
// of a 1 MiB thread stack, leaving the rest to the host's own frames.
//
// A parser made for one kind of document may keep the fields of its
// dictionary out of the DOM (SetFieldRecording, SetFieldsInDOM): each field
// is then read as the document streams into a compact record (FieldRecorder,
// ZRXFieldReader.h), and no node is made of it or of anything in it. Such
// fields count for the depth limit as if they were built, so that a document
// is refused for its depth alike in both ways.
//
// Derived parsers may override the element and content events; they must
// call these versions, which keep the depth count, stop the parse and take
// the events of the fields kept out, for every element they build. One that
// leaves an element out whole (its start, everything in it and its end:
// ZRPMMLDOMParser) passes none of its events on, and the count and the limit
// are of the elements passed on.
class ZRXDOMParser : private Detail::ZRXMemoryHolder,
                     private Detail::ZRXSecurityHolder,
                     public xercesc::XercesDOMParser {
public:
    static const XMLSize_t kMaxDepth = 2000;
    static const XMLSize_t kMaxEntityExpansions = 1000;

    ZRXDOMParser();
    ~ZRXDOMParser() override;
    ZRXDOMParser(const ZRXDOMParser&) = delete;
    ZRXDOMParser& operator=(const ZRXDOMParser&) = delete;

    // True after a parse that was stopped for its depth, until the next parse
    // starts.
    bool WasTooDeep() const { return m_tooDeep; }

    void startDocument() override;
    // Past kMaxDepth, throws ZRXTooDeep (before the element is made), which
    // ends the parse; ParseWithParser turns it into a failed parse.
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

    // Which fields this parser can keep out of the DOM; set once, by the
    // reader that owns the parser. None until then.
    void SetFieldRecording(const FieldRecording& recording);
    // Whether the next parse builds the fields (true, the default) or keeps
    // them out. Frees the records of the last parse either way.
    void SetFieldsInDOM(bool fieldsInDOM);
    // The records of the fields of the last parse, or null when they were
    // built (or there was no parse since SetFieldsInDOM).
    const FieldStore* RecordedFields() const;

    // What startElement throws past the limit.
    struct ZRXTooDeep {};

protected:
    // The number of elements open now (0 outside the document element). A
    // derived parser's startElement that asks before it calls this class's
    // startElement gets the level of the new element's parent; its
    // endElement, asking before it calls this class's endElement, the level
    // of the element that ends; its content events, the level of the element
    // the content is in.
    XMLSize_t Depth() const { return m_depth; }

private:
    bool InRecordedField() const;

    XMLSize_t m_depth;
    bool m_tooDeep;
    bool m_fieldsInDOM;
    std::unique_ptr<FieldRecorder> m_fields;
};

} // namespace ZRXPrsUtil

#endif
