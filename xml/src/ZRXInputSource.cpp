// A document source over a std::istream.
#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace ZRXPrsUtil {

namespace {

// Hands the bytes of the stream to the XML library. A short read or the end
// of the stream shows as a count below the one asked for.
class ZRXBinInputStream : public xercesc::BinInputStream {
public:
    explicit ZRXBinInputStream(std::istream* stream) : m_stream(stream), m_read(0), m_ended(false)
    {}
    ~ZRXBinInputStream() override {}

    // The stream's position; once the stream has failed (tellg gives -1 at
    // the end of input), the number of bytes handed out so far.
    XMLFilePos curPos() const override
    {
        try {
            const std::streampos position = m_stream->tellg();
            if (position >= 0)
                return static_cast<XMLFilePos>(position);
        } catch (...) {
        }
        return m_read;
    }

    // An exception of the stream (a stream whose exception mask is set, or
    // whose buffer throws) ends the input here: it must not cross the XML
    // library, which leaks when a read throws while it opens the document.
    // What was read before is the document, so a document cut off this way
    // fails to parse, and a stream that throws at its end still works.
    XMLSize_t readBytes(XMLByte* const toFill, const XMLSize_t maxToRead) override
    {
        std::streamsize count = 0;
        if (!m_ended) {
            try {
                m_stream->read(reinterpret_cast<char*>(toFill),
                               static_cast<std::streamsize>(maxToRead));
            } catch (...) {
                m_ended = true;
            }
            count = m_stream->gcount();
        }
        m_read += static_cast<XMLFilePos>(count);
        return static_cast<XMLSize_t>(count);
    }

    const XMLCh* getContentType() const override { return nullptr; }

private:
    std::istream* m_stream;
    XMLFilePos m_read;
    bool m_ended;
};

} // namespace

ZRXInputSource::ZRXInputSource(std::istream& stream)
    : xercesc::InputSource("istream", xercesc::XMLPlatformUtils::fgMemoryManager), m_stream(stream)
{}

ZRXInputSource::ZRXInputSource(std::istream& stream, xercesc::MemoryManager* manager)
    : xercesc::InputSource("istream", manager), m_stream(stream)
{}

ZRXInputSource::~ZRXInputSource() {}

bool ZRXInputSource::StreamBroken() const
{
    return m_stream.bad();
}

xercesc::BinInputStream* ZRXInputSource::makeStream() const
{
    // BinInputStream allocates through the XML library's memory manager
    // (XMemory), here the source's, and the XML library deletes the stream
    // after the parse. A failed allocation gives null, which the parser
    // reports as unreadable input.
    try {
        return new (getMemoryManager()) ZRXBinInputStream(&m_stream);
    } catch (...) {
        return nullptr;
    }
}

} // namespace ZRXPrsUtil
