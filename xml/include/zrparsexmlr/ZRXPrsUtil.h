// Text and DOM helpers: the one layer through which the readers and writers
// of the library touch XMLCh text and the DOM. All names, attribute names and
// values that the library's own code handles are UTF-8; these helpers convert
// to and from the XML library's UTF-16 XMLCh.
//
// Every function here needs the XML library to be initialised, which the
// constructors of ZRXMLReadWrite, ZRDataModelParser and ZRPMMLParser do.
//
// A lack of memory is not a fault of the text: where these helpers turn a
// failure into an empty, false or -1 result, a failed allocation still passes
// to the caller as std::bad_alloc or the XML library's OutOfMemoryException,
// as it does from the XML library's own DOM calls. (The readers, the combiner
// and ZRXMLReadWrite, which call them, catch it and report a status.)
#ifndef ZRPARSEXMLR_ZRXPRSUTIL_H
#define ZRPARSEXMLR_ZRXPRSUTIL_H

#include <zrparsexmlr/ZRXExport.h>
#include <zrparsexmlr/ZRXercesFwd.h>

#include <xercesc/sax/InputSource.hpp>

#include <cstddef>
#include <istream>
#include <string>
#include <utility>
#include <vector>

namespace ZRXPrsUtil {

// The value of the "extender" attribute that marks a PMML Extension element
// as this system's own.
ZRXPRS_API extern const char* const VendorExtenderId;

// A list of tags or keywords: entries in order, closed by an entry whose
// `second` is null. `first` belongs to the caller and is never read here.
typedef std::pair<unsigned int, const char*> NameListEntry;

// ---------------------------------------------------------------- conversion

// A transcoder between XMLCh and one byte encoding, made through the XML
// library's transcoding service for each object. Never throws on bad text: a
// failed conversion gives an empty result. A pass of the XML library's
// transcoder that consumes nothing (text that ends inside a multi-byte
// character, or a high surrogate as the last code unit) ends the conversion
// and counts as a failure: the text is not valid in the encoding.
class ZRXPRS_API ZRXTranscoder {
public:
    // `encoding` null stands for "UTF-8". Invalid if the XML library has no
    // transcoder for the encoding, or is not started.
    explicit ZRXTranscoder(const char* encoding = nullptr);
    ~ZRXTranscoder();
    ZRXTranscoder(const ZRXTranscoder&) = delete;
    ZRXTranscoder& operator=(const ZRXTranscoder&) = delete;

    bool isValid() const;
    // The code units of `text` (not null) with one closing zero. An invalid
    // object or a failed conversion gives a vector holding only the zero.
    std::vector<XMLCh> TranscodeFrom(const char* text) const;
    // `text` in the object's encoding; null, an invalid object or a failed
    // conversion (also a character the encoding can't hold) give "".
    std::string TranscodeTo(const XMLCh* text) const;

private:
    xercesc::XMLTranscoder* m_transcoder;
};

// UTF-16 to UTF-8; null gives "".
// ToUTF8 and ToUTF16 give exactly what a UTF-8 ZRXTranscoder gives, failures
// (empty results) included. Well-formed text, which is all that documents
// hold in practice, they convert directly instead of making a transcoder per
// call: they sit on every attribute read and tag comparison, and a
// transcoder per call costs several times the conversion itself
// (bench/bench_transcode). Only text that the direct conversion refuses goes
// through a UTF-8 ZRXTranscoder made for that call, so that its answer is the
// XML library's own. Holding no object of the XML library between calls,
// they can't outlive it across XMLPlatformUtils::Initialize/Terminate
// cycles.
ZRXPRS_API std::string ToUTF8(const XMLCh* text);
// UTF-8 (not null) to UTF-16 with a closing zero.
ZRXPRS_API std::vector<XMLCh> ToUTF16(const char* text);
// Exact, case-sensitive comparison of XMLCh text with UTF-8 text, code unit by
// code unit after ToUTF16 of `str` (ASCII `str` is compared in place). Null
// `xstr` equals "", and so does `str` when it is not valid UTF-8.
ZRXPRS_API bool XStrEqualsUTF8Str(const XMLCh* xstr, const char* str);

// ------------------------------------------------------ attributes and tags

// The attribute's value, owned by the DOM, or null if the element has no such
// attribute. A present empty attribute gives a pointer to an empty string.
ZRXPRS_API const XMLCh* GetAttribute(const xercesc::DOMElement& element, const char* name);
// As above if the node is an element, else null.
ZRXPRS_API const XMLCh* GetAttribute(const xercesc::DOMNode& node, const char* name);
// -1 attribute absent; 0 success; 1 not an integer or the sign rule broken.
// Sign rule: negative, any integer; zero, 0 or more; positive, more than 0.
// `value` is written whenever the text is an integer, also when the sign
// rule then fails.
ZRXPRS_API int GetIntAttribute(const xercesc::DOMElement& element, const char* name, int signRule,
                               int& value);
// -1 attribute absent; 0 success; 1 not accepted by the number rule (NaN
// gives ZRMV::gMissingValue, INF and -INF are refused).
ZRXPRS_API int GetDoubleAttribute(const xercesc::DOMElement& element, const char* name,
                                  double& value);
// The whole tag as written, prefix included, equals `name`.
ZRXPRS_API bool TagNameEquals(const xercesc::DOMElement& element, const char* name);
// The node as an element if it is one and `tag` is null or matches.
ZRXPRS_API const xercesc::DOMElement* AsElement(const xercesc::DOMNode& node, const char* tag);

// ---------------------------------------------------------------- navigation

ZRXPRS_API const xercesc::DOMElement* GetNextSiblingElmt(const xercesc::DOMNode& node,
                                                         const char* tag);
ZRXPRS_API const xercesc::DOMElement* GetFirstChildElmt(const xercesc::DOMNode& node,
                                                        const char* tag);
// The first child whose tag is that of the earliest entry of `names` that has
// a child; `index` is that entry's position (0 and null when none matches).
ZRXPRS_API const xercesc::DOMElement*
GetFirstChildElmt(const xercesc::DOMNode& node, const NameListEntry* names, std::size_t& index);
// Vendor Extension elements: tag "Extension", "extender" equal to
// VendorExtenderId and, when `name` is not null, "name" equal to it.
ZRXPRS_API const xercesc::DOMElement* GetNextSiblingExtension(const xercesc::DOMNode& node,
                                                              const char* name);
ZRXPRS_API const xercesc::DOMElement* GetFirstChildExtension(const xercesc::DOMNode& node,
                                                             const char* name);

// ------------------------------------------------------- lists and numbers

// Index of the first entry equal to `text`, -1 if none or the list is empty.
ZRXPRS_API int FindXStrInList(const XMLCh* text, const NameListEntry* names);
ZRXPRS_API int FindXStrInList(const XMLCh* text, const std::vector<std::string>& names);
// The element's only child text as a list of numbers. No child: true and an
// empty list. More than one child, or a child that is not text: false, list
// untouched. A token that is not a number: false and an empty list.
ZRXPRS_API bool AssembleDoublesList(const xercesc::DOMElement& element,
                                    std::vector<double>& values);

// ------------------------------------------------------------------ building
// Failure is told by the result; no DOM exception leaves these functions.

ZRXPRS_API xercesc::DOMElement* CreateElement(xercesc::DOMDocument& document, const char* tag);
ZRXPRS_API xercesc::DOMElement* CreateExtension(xercesc::DOMDocument& document, const char* name);
// A null new child (and for ReplaceElement a null old child) gives false
// without touching the DOM; a null reference child of InsertElement appends.
ZRXPRS_API bool ReplaceElement(xercesc::DOMElement& parent, xercesc::DOMElement* newChild,
                               xercesc::DOMElement* oldChild);
ZRXPRS_API bool InsertElement(xercesc::DOMElement& parent, xercesc::DOMElement* newChild,
                              xercesc::DOMElement* refChild);
ZRXPRS_API bool SetAttribute(xercesc::DOMElement& element, const char* name, const char* value);
// The value as text by ZRXML_NAMESPACE::Format(value, false, nullptr).
ZRXPRS_API bool SetAttribute(xercesc::DOMElement& element, const char* name, double value);

// -------------------------------------------------------------- input source

// A document source that reads a std::istream, which must outlive the parse.
// The stream's read() feeds the parser; its gcount() tells a short read and
// the end of input. Its position is tellg(), or once the stream has failed
// (tellg() gives -1 at the end of input) the bytes handed out so far. An
// exception of the stream is caught and ends the input there: a document cut
// off by it fails to parse (104), and a stream whose exception mask includes
// failbit, which throws at its end, reads like any other. (Bytes that the
// stream had taken but not yet handed out when it threw are lost with it.)
// A stream that broke (badbit: a read error of its buffer, or an exception
// of it) has not given the whole document, however well-formed the part read
// looks: the library's parsers fail such a parse with 104 (StreamBroken).
// The stream itself is left to the caller as it is.
class ZRXPRS_API ZRXInputSource : public xercesc::InputSource {
public:
    explicit ZRXInputSource(std::istream& stream);
    // The source and the reading stream that it makes for the parser take
    // their memory from `manager`: the library's parsers pass their own, so
    // that the stream is freed with the parser even where the XML library
    // loses it (a failed allocation while it sets up the reader).
    ZRXInputSource(std::istream& stream, xercesc::MemoryManager* manager);
    ~ZRXInputSource() override;
    xercesc::BinInputStream* makeStream() const override;
    // True when the stream has broken (badbit set).
    bool StreamBroken() const;

private:
    std::istream& m_stream;
};

// The tag of the document element of the document that `stream` holds, as
// written (a prefix included), in UTF-8. The XML library reads the prolog
// (the XML declaration, comments, processing instructions, a DOCTYPE and its
// internal subset) and the element's start tag with the readers' settings
// (no external entity is resolved, no external DTD loaded), and nothing
// after it; no DOM is built. False, with `tag` empty, when it can't read that
// far: bytes that are not well-formed before it, an encoding it doesn't
// know, an external entity in use, no element at all. It lets a caller
// choose the reader of a document without parsing the document for it. The
// XML library reads ahead in blocks, so the stream is left past the start
// tag by an amount that is not told: rewind it, or open it again, before the
// document is parsed. Takes its own share of the XML library's start, so no
// reader object need exist.
ZRXPRS_API bool GetDocumentElementTag(std::istream& stream, std::string& tag);

} // namespace ZRXPrsUtil

#endif
