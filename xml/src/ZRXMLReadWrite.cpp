#include <zrparsexmlr/ZRXMLReadWrite.h>

#include "ZRXFileWriter.h"
#include "ZRXOwnedMemory.h"
#include <zrparsexmlr/ZRXPlatformShare.h>
#include "ZRXPrsUtilInternal.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <cstring>
#include <memory>
#include <string>

using ZRCommon::ZRStatus;

namespace ZRXPrsUtil {

namespace {

// Releases an object of the XML library's DOM.
struct ZRXReleaser {
    template <class T>
    void operator()(T* object) const
    {
        object->release();
    }
};

} // namespace

ZRXMLReadWrite::ZRXMLReadWrite()
    : share(), status(), parser(nullptr), xercesMessage(), document(nullptr)
{
    if (!share.IsHeld())
        status = ZRStatus(ZRCommon::eCannotStart, false);
}

ZRXMLReadWrite::~ZRXMLReadWrite()
{
    DropParser();
}

void ZRXMLReadWrite::DropParser()
{
    delete parser;
    parser = nullptr;
    document = nullptr;
}

ZRStatus ZRXMLReadWrite::GetInitStatus() const
{
    return status;
}

ZRStatus ZRXMLReadWrite::ParseToDOM(const std::string& path)
{
    return ParseToDOM(path.c_str(), nullptr);
}

ZRStatus ZRXMLReadWrite::ParseToDOM(std::istream& stream)
{
    return ParseToDOM(nullptr, &stream);
}

ZRStatus ZRXMLReadWrite::ParseToDOM(const char* path, std::istream* stream)
try {
    ZRStatus result = status;
    if (!result.IsOK())
        return result;

    DropParser();
    xercesMessage.clear();

    try {
        parser = NewDOMParser();
    } catch (...) {
        parser = nullptr;
    }
    if (parser == nullptr)
        return ZRStatus(ZRCommon::eCannotStart, false);

    if (stream != nullptr) {
        ZRXInputSource source(*stream, ParserMemory(*parser));
        result = ParseWithParser(*parser, &source, nullptr, xercesMessage);
    } else {
        result = ParseWithParser(*parser, nullptr, path, xercesMessage);
    }
    if (result.IsOK()) {
        document = parser->getDocument();
        if (document == nullptr)
            result = ZRStatus(ZRCommon::eCannotParse, false);
    }
    if (!result.IsOK())
        DropParser();
    return result;
} catch (...) {
    // Memory ran out around the parse (the stream's source): no document.
    DropParser();
    return ZRStatus(ZRCommon::eCannotParse, false);
}

ZRStatus ZRXMLReadWrite::WriteFromDOM(const std::string& path,
                                      const xercesc::DOMDocument* doc) const
try {
    ZRStatus result = status;
    const xercesc::DOMDocument* target = doc != nullptr ? doc : document;
    if (!result.IsOK() || target == nullptr)
        return result;
    xercesMessage.clear();
    const ZRStatus failed(ZRCommon::eCannotWrite, false);

    // The XML library's one DOM implementation, which serves "LS", taken
    // directly: asked for by feature name, the registry splits the name with
    // a tokenizer that loses memory when an allocation in it fails.
    xercesc::DOMImplementation* impl = xercesc::DOMImplementation::getImplementation();
    if (impl == nullptr)
        return failed;
    // The serialiser and its formatter take their memory from a manager of
    // the write's own (ZRXOwnedMemory.h): their constructors lose what they
    // had allocated when a later allocation fails, and the manager frees it.
    ZRXOwnedMemory memory;
    const std::unique_ptr<xercesc::DOMLSSerializer, ZRXReleaser> serializer(
        impl->createLSSerializer(&memory));
    xercesc::DOMConfiguration* config = serializer->getDomConfig();
    if (config->canSetParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint, false))
        config->setParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint, false);
    const std::unique_ptr<xercesc::DOMLSOutput, ZRXReleaser> output(impl->createLSOutput(&memory));
    ZRXFileWriter file(path);
    bool written = false;
    if (file.IsOpen()) {
        output->setByteStream(&file);
        try {
            written = serializer->write(target, output.get());
        } catch (const xercesc::XMLException& e) {
            xercesMessage = ToUTF8(e.getMessage());
        }
        // The file replaces the target only when the whole document is in it.
        written = written && file.Commit();
    }
    if (!written && xercesMessage.empty() && file.Error() != 0)
        xercesMessage = path + ": " + std::strerror(file.Error());
    return written ? result : failed;
} catch (...) {
    // Memory ran out, or the serialiser threw: the file under construction
    // is gone with the writer, and the target is as it was.
    return ZRStatus(ZRCommon::eCannotWrite, false);
}

std::string ZRXMLReadWrite::GetXercesMessage() const
{
    try {
        return xercesMessage;
    } catch (...) {
        return std::string();
    }
}

const xercesc::DOMDocument* ZRXMLReadWrite::GetDocument() const
{
    return document;
}

xercesc::DOMDocument* ZRXMLReadWrite::GetDocument()
{
    return document;
}

} // namespace ZRXPrsUtil
