#include "ZRXPlatform.h"

#include <zrparsexmlr/ZRXPlatformShare.h>

#include <xercesc/util/PanicHandler.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <mutex>
#include <new>

namespace ZRXPrsUtil {

namespace {

// Constant-initialised, so usable from static constructors of other files.
std::mutex gLock;
long gShares = 0;
// Set for good once a start of the XML library has failed (ZRXPlatform.h).
bool gStartFailed = false;

// What the panic handler throws.
struct ZRXPanic {};

// Reports a panic of the XML library by an exception instead of ending the
// process (see ZRXPlatform.h).
class ZRXPanicHandler : public xercesc::PanicHandler {
public:
    void panic(const PanicReasons) override { throw ZRXPanic(); }
};

// The handler lives in static storage and is never destroyed, so that the
// XML library may call it at any time, also while the process ends.
ZRXPanicHandler& PanicHandler()
{
    alignas(ZRXPanicHandler) static unsigned char storage[sizeof(ZRXPanicHandler)];
    static ZRXPanicHandler* const handler = new (storage) ZRXPanicHandler();
    return *handler;
}

} // namespace

bool ZRXPlatform::Acquire()
{
    std::lock_guard<std::mutex> guard(gLock);
    if (gStartFailed)
        return false;
    if (gShares == 0) {
        try {
            xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr,
                                                  &PanicHandler(), nullptr);
        } catch (...) {
            // Left half-started on purpose: Terminate would crash on it.
            gStartFailed = true;
            return false;
        }
    }
    ++gShares;
    return true;
}

void ZRXPlatform::Release()
{
    std::lock_guard<std::mutex> guard(gLock);
    if (gShares == 0)
        return;
    if (--gShares == 0)
        xercesc::XMLPlatformUtils::Terminate();
}

ZRXPlatformShare::ZRXPlatformShare() : held(ZRXPlatform::Acquire()) {}

ZRXPlatformShare::~ZRXPlatformShare()
{
    if (held)
        ZRXPlatform::Release();
}

long ZRXPlatform::Shares()
{
    std::lock_guard<std::mutex> guard(gLock);
    return gShares;
}

} // namespace ZRXPrsUtil
