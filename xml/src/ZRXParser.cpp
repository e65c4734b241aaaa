// The one place where the library makes and runs its DOM parsers.
#include "ZRXPrsUtilInternal.h"
#include "ZRXDOMParser.h"
#include "ZRXPlatform.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <string>
#include <utility>

namespace ZRXPrsUtil {

namespace {

// Keeps the text of the first error that the XML library reports during one
// parse. It throws nothing, so the parse runs exactly as without a handler:
// the parser counts the error and stops at the first fatal one.
class ZRXFirstErrorKeeper : public xercesc::ErrorHandler {
public:
    void warning(const xercesc::SAXParseException&) override {}
    void error(const xercesc::SAXParseException& e) override { Keep(e); }
    void fatalError(const xercesc::SAXParseException& e) override { Keep(e); }
    void resetErrors() override {}

    std::string message;

private:
    void Keep(const xercesc::SAXParseException& e)
    {
        if (message.empty())
            message = ToUTF8(e.getMessage());
    }
};

// Puts a handler on a parser for the life of this object, then the one
// before it back.
class ZRXHandlerScope {
public:
    ZRXHandlerScope(xercesc::XercesDOMParser& parser, xercesc::ErrorHandler& handler)
        : m_parser(parser), m_before(parser.getErrorHandler())
    {
        m_parser.setErrorHandler(&handler);
    }
    ~ZRXHandlerScope() { m_parser.setErrorHandler(m_before); }
    ZRXHandlerScope(const ZRXHandlerScope&) = delete;
    ZRXHandlerScope& operator=(const ZRXHandlerScope&) = delete;

private:
    xercesc::XercesDOMParser& m_parser;
    xercesc::ErrorHandler* m_before;
};

// The text of the exception being handled where it carries one (also an
// OutOfMemoryException, which is not an XMLException), else `kept`: an
// exception of the input stream, for one, ends a parse that may have reported
// an error first. Never throws.
std::string CaughtMessage(const std::string& kept)
{
    try {
        try {
            throw;
        } catch (const xercesc::XMLException& e) {
            return ToUTF8(e.getMessage());
        } catch (const xercesc::SAXException& e) {
            return ToUTF8(e.getMessage());
        } catch (const xercesc::DOMException& e) {
            return ToUTF8(e.getMessage());
        } catch (const xercesc::OutOfMemoryException& e) {
            return ToUTF8(e.getMessage());
        } catch (...) {
            return kept;
        }
    } catch (...) {
        return std::string();
    }
}

// The library's parser that, read progressively, stops at the start of the
// document element and builds no element.
class ZRXRootTagReader : public ZRXDOMParser {
public:
    void startElement(const xercesc::XMLElementDecl& elemDecl, const unsigned int,
                      const XMLCh* const, const xercesc::RefVectorOf<xercesc::XMLAttr>&,
                      const XMLSize_t, const bool, const bool) override
    {
        if (!found)
            tag = ToUTF8(elemDecl.getFullName());
        found = true;
    }
    void endElement(const xercesc::XMLElementDecl&, const unsigned int, const bool,
                    const XMLCh* const) override
    {}

    bool found = false;
    std::string tag;
};

// Reads protected members of any DOM parser of the XML library: the address
// of a protected member taken through a derived class is an ordinary pointer
// to a member of the base, usable on any object of it.
struct ZRXParserPeek : xercesc::XercesDOMParser {
    static bool InProgress(const xercesc::AbstractDOMParser& parser)
    {
        return (parser.*(&ZRXParserPeek::getParseInProgress))();
    }
    static xercesc::MemoryManager* Memory(const xercesc::AbstractDOMParser& parser)
    {
        return (parser.*(&ZRXParserPeek::getMemoryManager))();
    }
};

} // namespace

bool GetDocumentElementTag(std::istream& stream, std::string& tag)
{
    tag.clear();
    if (!ZRXPlatform::Acquire())
        return false;
    bool found = false;
    try {
        ZRXRootTagReader reader;
        ZRXFirstErrorKeeper errors;
        ZRXHandlerScope scope(reader, errors);
        ZRXInputSource source(stream);
        xercesc::XMLPScanToken token;
        if (reader.parseFirst(source, token)) {
            while (!reader.found && reader.parseNext(token)) {
            }
            reader.parseReset(token);
        }
        found = reader.found && reader.getErrorCount() == 0;
        if (found)
            tag = reader.tag;
    } catch (...) {
        found = false;
        tag.clear();
    }
    ZRXPlatform::Release();
    return found;
}

bool ParserIsSpent(const xercesc::XercesDOMParser& parser)
{
    return ZRXParserPeek::InProgress(parser);
}

xercesc::MemoryManager* ParserMemory(const xercesc::XercesDOMParser& parser)
{
    return ZRXParserPeek::Memory(parser);
}

void RethrowAllocationFailure()
{
    try {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const xercesc::OutOfMemoryException&) {
        throw;
    } catch (...) {
    }
}

ZRXDOMParser* NewDOMParser()
{
    return new ZRXDOMParser();
}

ZRCommon::ZRStatus ParseWithParser(xercesc::XercesDOMParser& parser,
                                   const xercesc::InputSource* source, const char* path,
                                   std::string& message)
try {
    const ZRCommon::ZRStatus failed(ZRCommon::eCannotParse, false);
    message.clear();
    if (!source && !path)
        return failed;
    std::error_code ignored;
    if (!source && std::filesystem::is_directory(path, ignored)) {
        // The XML library leaks a little memory on every attempt to read a
        // folder as a document; a folder is no document anyway.
        message = std::string("is a folder, not a document: ") + path;
        return failed;
    }
    // A path is opened here as a local file and read as a stream: the XML
    // library would take it for a URL where it looks like one and fetch it.
    std::ifstream file;
    std::unique_ptr<ZRXInputSource> fileSource;
    if (!source) {
        try {
            file.open(path, std::ios::in | std::ios::binary);
            if (file.is_open())
                fileSource.reset(new ZRXInputSource(file, ParserMemory(parser)));
        } catch (...) {
        }
        if (!fileSource) {
            message = std::string("can't open the file: ") + path;
            return failed;
        }
        source = fileSource.get();
    }
    ZRXFirstErrorKeeper errors;
    try {
        // The documents of earlier parses go first: the XML library keeps
        // every document a parser made until the parser is destroyed, so a
        // reader that parses again and again would grow without end.
        parser.resetDocumentPool();
        ZRXHandlerScope scope(parser, errors);
        parser.parse(*source);
    } catch (...) {
        message = CaughtMessage(errors.message);
        const ZRXDOMParser* ours = dynamic_cast<const ZRXDOMParser*>(&parser);
        if (ours && ours->WasTooDeep())
            message = "elements nested deeper than " + std::to_string(ZRXDOMParser::kMaxDepth) +
                      " levels";
        return failed;
    }
    if (parser.getErrorCount() != 0 || !parser.getDocument()) {
        message = std::move(errors.message);
        return failed;
    }
    const ZRXInputSource* stream = dynamic_cast<const ZRXInputSource*>(source);
    if (stream != nullptr && stream->StreamBroken()) {
        // The stream failed before its end: what was read is not the whole
        // document, whether or not it is well-formed.
        message = "the stream broke while the document was read";
        return failed;
    }
    return ZRCommon::ZRStatus();
} catch (...) {
    // Memory ran out outside the parse itself (opening the file, or telling
    // the failure): a failed parse all the same.
    message.clear();
    return ZRCommon::ZRStatus(ZRCommon::eCannotParse, false);
}

} // namespace ZRXPrsUtil
