#include "ZRXPlatform.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <mutex>

namespace ZRXPrsUtil {

namespace {

// Constant-initialised, so usable from static constructors of other files.
std::mutex gLock;
long gShares = 0;

} // namespace

bool ZRXPlatform::Acquire()
{
    std::lock_guard<std::mutex> guard(gLock);
    if (gShares == 0) {
        try {
            xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr,
                                                  nullptr, nullptr);
        } catch (...) {
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

long ZRXPlatform::Shares()
{
    std::lock_guard<std::mutex> guard(gLock);
    return gShares;
}

} // namespace ZRXPrsUtil
