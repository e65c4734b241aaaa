// Conversion between the XML library's UTF-16 XMLCh text and the byte
// encodings that the library's own code handles.
#include "ZRXPrsUtilInternal.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLString.hpp>

#include <cstdint>
#include <cstring>

namespace ZRXPrsUtil {

namespace {

const XMLCh kUTF8Name[] = {u'U', u'T', u'F', u'-', u'8', 0};
const std::size_t kBufferSize = 1000;
const XMLSize_t kBlockSize = 4000;

// Trailing bytes announced by a UTF-8 lead byte, in the way of the XML
// library's own UTF-8 transcoder: 0x80..0xBF announce none (and are refused
// as lead bytes), 0xF8..0xFF announce four or five (always refused).
inline unsigned TrailingBytes(unsigned char lead)
{
    if (lead < 0xC0)
        return 0;
    if (lead < 0xE0)
        return 1;
    if (lead < 0xF0)
        return 2;
    if (lead < 0xF8)
        return 3;
    return lead < 0xFC ? 4 : 5;
}

inline bool IsTrail(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

// UTF-8 to UTF-16 of well-formed text, as the XML library's UTF-8
// transcoder converts it. Refused are stray continuation bytes, a lead byte
// without its continuation bytes (also at the very end of the text), overlong
// forms, encoded surrogates, five- and six-byte forms and code points above
// U+10FFFF. False on refusal; `out` is then to be dropped and the text left
// to that transcoder, whose answer for ill-formed text is not always a
// refusal.
bool Utf8ToUtf16(const unsigned char* src, std::size_t count, std::vector<XMLCh>& out)
{
    std::size_t i = 0;
    while (i < count) {
        const unsigned char lead = src[i];
        if (lead < 0x80) {
            out.push_back(XMLCh(lead));
            ++i;
            continue;
        }
        const unsigned trail = TrailingBytes(lead);
        if (trail == 0 || trail > 3 || i + trail >= count)
            return false;
        const unsigned char* p = src + i;
        std::uint32_t value = 0;
        switch (trail) {
        case 1:
            if (lead < 0xC2 || !IsTrail(p[1]))
                return false;
            value = (std::uint32_t(lead & 0x1F) << 6) | (p[1] & 0x3F);
            break;
        case 2:
            if ((lead == 0xE0 && p[1] < 0xA0) || !IsTrail(p[1]) || !IsTrail(p[2]) ||
                (lead == 0xED && p[1] >= 0xA0))
                return false;
            value = (std::uint32_t(lead & 0x0F) << 12) | (std::uint32_t(p[1] & 0x3F) << 6) |
                    (p[2] & 0x3F);
            break;
        default:
            if ((lead == 0xF0 && p[1] < 0x90) || (lead == 0xF4 && p[1] > 0x8F) || !IsTrail(p[1]) ||
                !IsTrail(p[2]) || !IsTrail(p[3]))
                return false;
            value = (std::uint32_t(lead & 0x07) << 18) | (std::uint32_t(p[1] & 0x3F) << 12) |
                    (std::uint32_t(p[2] & 0x3F) << 6) | (p[3] & 0x3F);
            if (value > 0x10FFFF)
                return false;
            break;
        }
        if (value <= 0xFFFF) {
            out.push_back(XMLCh(value));
        } else {
            value -= 0x10000;
            out.push_back(XMLCh((value >> 10) + 0xD800));
            out.push_back(XMLCh((value & 0x3FF) + 0xDC00));
        }
        i += trail + 1;
    }
    return true;
}

// UTF-16 to UTF-8 as the XML library's UTF-8 transcoder converts it when
// asked to throw on what it can't represent. A high surrogate
// takes the next code unit as its partner whatever that is, as that
// transcoder does (a pair that adds up beyond U+10FFFF is refused); a lone
// low surrogate is written as its three-byte form; a high surrogate as the
// last unit is refused. False on refusal.
bool Utf16ToUtf8(const XMLCh* src, std::size_t count, std::string& out)
{
    std::size_t i = 0;
    while (i < count) {
        std::uint32_t value = src[i];
        std::size_t used = 1;
        if (value < 0x80) {
            out.push_back(char(value));
            ++i;
            continue;
        }
        if (value >= 0xD800 && value <= 0xDBFF) {
            if (i + 1 >= count)
                return false;
            value = ((value - 0xD800) << 10) + std::uint32_t(int(src[i + 1]) - 0xDC00 + 0x10000);
            used = 2;
        }
        if (value < 0x800) {
            out.push_back(char(0xC0 | (value >> 6)));
        } else if (value < 0x10000) {
            out.push_back(char(0xE0 | (value >> 12)));
            out.push_back(char(0x80 | ((value >> 6) & 0x3F)));
        } else if (value < 0x110000) {
            out.push_back(char(0xF0 | (value >> 18)));
            out.push_back(char(0x80 | ((value >> 12) & 0x3F)));
            out.push_back(char(0x80 | ((value >> 6) & 0x3F)));
        } else {
            return false;
        }
        out.push_back(char(0x80 | (value & 0x3F)));
        i += used;
    }
    return true;
}

bool IsAscii(const char* text)
{
    for (; *text; ++text)
        if (static_cast<unsigned char>(*text) >= 0x80)
            return false;
    return true;
}

} // namespace

ZRXTranscoder::ZRXTranscoder(const char* encoding) : m_transcoder(nullptr)
{
    if (!xercesc::XMLPlatformUtils::fgTransService)
        return; // the XML library is not started
    try {
        xercesc::XMLTransService::Codes code = xercesc::XMLTransService::Ok;
        const std::vector<XMLCh> name =
            encoding ? ToUTF16(encoding) : std::vector<XMLCh>(kUTF8Name, kUTF8Name + 6);
        xercesc::XMLTranscoder* made =
            xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor(
                name.data(), code, kBlockSize, xercesc::XMLPlatformUtils::fgMemoryManager);
        if (code == xercesc::XMLTransService::Ok)
            m_transcoder = made;
        else
            delete made;
    } catch (...) {
        RethrowAllocationFailure();
        m_transcoder = nullptr;
    }
}

ZRXTranscoder::~ZRXTranscoder()
{
    delete m_transcoder;
}

bool ZRXTranscoder::isValid() const
{
    return m_transcoder != nullptr;
}

std::vector<XMLCh> ZRXTranscoder::TranscodeFrom(const char* text) const
{
    std::vector<XMLCh> result;
    if (m_transcoder && text) {
        const XMLByte* src = reinterpret_cast<const XMLByte*>(text);
        XMLSize_t remaining = std::strlen(text);
        XMLCh buffer[kBufferSize];
        unsigned char sizes[kBufferSize];
        try {
            while (remaining > 0) {
                XMLSize_t eaten = 0;
                const XMLSize_t made =
                    m_transcoder->transcodeFrom(src, remaining, buffer, kBufferSize, eaten, sizes);
                if (eaten == 0 || eaten > remaining) {
                    // A pass that consumes nothing (a character cut off at
                    // the end) would repeat for ever: the text is not valid
                    // in the encoding, so the conversion fails.
                    result.clear();
                    break;
                }
                result.insert(result.end(), buffer, buffer + made);
                src += eaten;
                remaining -= eaten;
            }
        } catch (...) {
            RethrowAllocationFailure();
            result.clear();
        }
    }
    result.push_back(0);
    return result;
}

std::string ZRXTranscoder::TranscodeTo(const XMLCh* text) const
{
    std::string result;
    if (!m_transcoder || !text)
        return result;
    const XMLCh* src = text;
    XMLSize_t remaining = xercesc::XMLString::stringLen(text);
    XMLByte buffer[kBufferSize];
    try {
        while (remaining > 0) {
            XMLSize_t eaten = 0;
            const XMLSize_t made = m_transcoder->transcodeTo(
                src, remaining, buffer, kBufferSize, eaten, xercesc::XMLTranscoder::UnRep_Throw);
            if (eaten == 0 || eaten > remaining) {
                // Nothing consumed: a high surrogate as the last unit. The
                // text can't be converted, which is a failure.
                result.clear();
                break;
            }
            result.append(reinterpret_cast<const char*>(buffer), made);
            src += eaten;
            remaining -= eaten;
        }
    } catch (...) {
        RethrowAllocationFailure();
        result.clear();
    }
    return result;
}

void AssignUTF8(std::string& out, const XMLCh* text)
{
    out.clear();
    if (!text)
        return;
    const std::size_t count = xercesc::XMLString::stringLen(text);
    // The ASCII run at the start, which is often the whole text, is written
    // straight into the string; the rest goes unit by unit.
    out.resize(count);
    std::size_t ascii = 0;
    for (; ascii < count && text[ascii] < 0x80; ++ascii)
        out[ascii] = static_cast<char>(text[ascii]);
    if (ascii == count)
        return;
    out.resize(ascii);
    if (!Utf16ToUtf8(text + ascii, count - ascii, out)) {
        // Text that the direct conversion refuses goes to the XML library's
        // own UTF-8 transcoder, so that the answer for it is exactly that
        // transcoder's, whatever its quirks.
        out = ZRXTranscoder().TranscodeTo(text);
    }
}

std::string ToUTF8(const XMLCh* text)
{
    std::string result;
    AssignUTF8(result, text);
    return result;
}

std::vector<XMLCh> ToUTF16(const char* text)
{
    std::vector<XMLCh> result;
    if (text) {
        const std::size_t count = std::strlen(text);
        result.reserve(count + 1);
        if (!Utf8ToUtf16(reinterpret_cast<const unsigned char*>(text), count, result)) {
            // Ill-formed text goes to the XML library's own UTF-8 transcoder,
            // whose answer is not always a refusal: it passes over some
            // sequences it can't decode (a four-byte form led by 0xF5 to
            // 0xF7) when they don't start one of its passes.
            return ZRXTranscoder().TranscodeFrom(text);
        }
    }
    result.push_back(0);
    return result;
}

bool XStrEqualsUTF8Str(const XMLCh* xstr, const char* str)
{
    if (!str)
        return !xstr || !*xstr;
    if (IsAscii(str)) {
        // ASCII maps one byte to one code unit: compare in place.
        if (!xstr)
            return *str == 0;
        for (; *str; ++str, ++xstr)
            if (*xstr != XMLCh(static_cast<unsigned char>(*str)))
                return false;
        return *xstr == 0;
    }
    return xercesc::XMLString::equals(xstr, ToUTF16(str).data());
}

} // namespace ZRXPrsUtil
