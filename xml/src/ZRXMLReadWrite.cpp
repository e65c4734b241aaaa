#include <zrparsexmlr/ZRXMLReadWrite.h>

#include "ZRXPlatform.h"
#include "ZRXPrsUtilInternal.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <cstddef>
#include <cstdio>
#include <string>

using ZRCommon::ZRStatus;

namespace ZRXPrsUtil {

namespace {

// A file target that remembers whether any write, flush or the closing of the
// file failed. The XML library's own file target swallows a failure of its
// last flush and of the close, so a full disk would go unnoticed. The
// serialiser hands over many small pieces; they are gathered and written in
// large blocks.
class CheckedFileTarget : public xercesc::XMLFormatTarget {
public:
    explicit CheckedFileTarget(const char* path) : m_file(std::fopen(path, "wb")), m_failed(false)
    {
        m_pending.reserve(kBlock);
    }
    ~CheckedFileTarget() override { Close(); }
    CheckedFileTarget(const CheckedFileTarget&) = delete;
    CheckedFileTarget& operator=(const CheckedFileTarget&) = delete;

    bool IsOpen() const { return m_file != nullptr; }

    void writeChars(const XMLByte* const bytes, const XMLSize_t count,
                    xercesc::XMLFormatter* const) override
    {
        if (m_file == nullptr || m_failed)
            return;
        m_pending.append(reinterpret_cast<const char*>(bytes), count);
        if (m_pending.size() >= kBlock)
            WritePending();
    }

    void flush() override
    {
        WritePending();
        if (m_file != nullptr && std::fflush(m_file) != 0)
            m_failed = true;
    }

    // True when everything reached the file and it closed cleanly.
    bool Close()
    {
        if (m_file != nullptr) {
            WritePending();
            if (std::fclose(m_file) != 0)
                m_failed = true;
            m_file = nullptr;
        }
        return !m_failed;
    }

private:
    static const std::size_t kBlock = 1 << 16;

    void WritePending()
    {
        if (m_file != nullptr && !m_failed && !m_pending.empty() &&
            std::fwrite(m_pending.data(), 1, m_pending.size(), m_file) != m_pending.size())
            m_failed = true;
        m_pending.clear();
    }

    std::FILE* m_file;
    bool m_failed;
    std::string m_pending;
};

} // namespace

ZRXMLReadWrite::ZRXMLReadWrite() : status(), parser(nullptr), xercesMessage(), document(nullptr)
{
    if (!ZRXPlatform::Acquire())
        status = ZRStatus(ZRCommon::eCannotStart, false);
}

ZRXMLReadWrite::~ZRXMLReadWrite()
{
    if (!status.IsOK())
        return;
    DropParser();
    ZRXPlatform::Release();
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
{
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
        ZRXInputSource source(*stream);
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
}

ZRStatus ZRXMLReadWrite::WriteFromDOM(const std::string& path,
                                      const xercesc::DOMDocument* doc) const
{
    ZRStatus result = status;
    const xercesc::DOMDocument* target = doc != nullptr ? doc : document;
    if (!result.IsOK() || target == nullptr)
        return result;
    xercesMessage.clear();

    static const XMLCh kLS[] = {u'L', u'S', 0};
    xercesc::DOMLSSerializer* serializer = nullptr;
    xercesc::DOMLSOutput* output = nullptr;
    bool written = false;
    try {
        xercesc::DOMImplementation* impl =
            xercesc::DOMImplementationRegistry::getDOMImplementation(kLS);
        if (impl != nullptr) {
            serializer = impl->createLSSerializer(xercesc::XMLPlatformUtils::fgMemoryManager);
            xercesc::DOMConfiguration* config = serializer->getDomConfig();
            if (config->canSetParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint, false))
                config->setParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint, false);
            CheckedFileTarget file(path.c_str());
            if (file.IsOpen()) {
                output = impl->createLSOutput(xercesc::XMLPlatformUtils::fgMemoryManager);
                output->setByteStream(&file);
                written = serializer->write(target, output);
                written = file.Close() && written;
            }
        }
    } catch (const xercesc::XMLException& e) {
        xercesMessage = ToUTF8(e.getMessage());
        written = false;
    } catch (...) {
        written = false;
    }
    if (output != nullptr)
        output->release();
    if (serializer != nullptr)
        serializer->release();
    return written ? result : ZRStatus(ZRCommon::eCannotWrite, false);
}

std::string ZRXMLReadWrite::GetXercesMessage() const
{
    return xercesMessage;
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
