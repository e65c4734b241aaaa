// The one place where the library makes and runs its DOM parsers.
#include "ZRXPrsUtilInternal.h"

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>

namespace ZRXPrsUtil {

namespace {

// Holds the security manager of a parser. As the first base of the parser it
// is built before the parser and destroyed after it, so that the parser never
// points at a dead security manager.
struct ZRXSecurityHolder {
    xercesc::SecurityManager security;
};

// A DOM parser that resolves no external entity, loads no external DTD and
// stops entity expansion at the XML library's default limit.
class ZRXHardenedDOMParser : private ZRXSecurityHolder, public xercesc::XercesDOMParser {
public:
    ZRXHardenedDOMParser()
        : xercesc::XercesDOMParser(nullptr, xercesc::XMLPlatformUtils::fgMemoryManager, nullptr)
    {
        security.setEntityExpansionLimit(xercesc::SecurityManager::ENTITY_EXPANSION_LIMIT);
        setDisableDefaultEntityResolution(true);
        setLoadExternalDTD(false);
        setSecurityManager(&security);
    }
};

} // namespace

xercesc::XercesDOMParser* NewDOMParser()
{
    return new ZRXHardenedDOMParser();
}

ZRCommon::ZRStatus ParseWithParser(xercesc::XercesDOMParser& parser,
                                   const xercesc::InputSource* source, const char* path,
                                   std::string& message)
{
    const ZRCommon::ZRStatus failed(104, false);
    message.clear();
    if (!source && !path)
        return failed;
    try {
        if (source)
            parser.parse(*source);
        else
            parser.parse(path);
    } catch (const xercesc::XMLException& e) {
        message = ToUTF8(e.getMessage());
        return failed;
    } catch (...) {
        // OutOfMemoryException (not an XMLException), or anything else that
        // left the XML library.
        return failed;
    }
    if (parser.getErrorCount() != 0 || !parser.getDocument())
        return failed;
    return ZRCommon::ZRStatus();
}

} // namespace ZRXPrsUtil
