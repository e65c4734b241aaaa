// Process-wide state of the encoding services: the UTF-8 mode, the default
// converter and its ID, the prepared locale and the system encoding.
#include "ZREncodingInternal.h"
#include "ZRPlatform.h"

#include <atomic>
#include <clocale>
#include <cstring>
#include <mutex>
#include <string>

namespace ZRMem {
namespace {

std::atomic<int> gUTF8mode{1};
std::atomic<UConverter*> gDefaultConverter{nullptr};
std::atomic<int> gDefaultConverterId{0};
std::atomic<bool> gLocaleEnabled{false};
std::atomic<bool> gSystemEncodingReady{false};
std::string gSystemEncoding;

// First use of each value is guarded; afterwards the atomics answer alone.
std::mutex gConverterMutex;
std::mutex gLocaleMutex;

void EnableLocaleLocked()
{
    if (gLocaleEnabled.load(std::memory_order_relaxed))
        return;
    gLocaleEnabled.store(true, std::memory_order_release);
    Platform::SetLocale(LC_NUMERIC, "C");
    const char* ctype = Platform::SetLocale(LC_CTYPE, nullptr);
    if (ctype && std::strcmp(ctype, "C") == 0) {
        // A process that never chose a locale gets a Western one; failures are
        // of no consequence.
        Platform::SetLocale(LC_ALL, "en_US");
        Platform::PutEnv("LC_ALL=en_US");
    }
}

} // namespace

namespace Internal {

void ResetEncodingState()
{
    std::lock_guard<std::mutex> lock(gLocaleMutex);
    gUTF8mode.store(1);
    gLocaleEnabled.store(false);
    gSystemEncodingReady.store(false);
    gSystemEncoding.clear();
}

// Once made, the default converter is only read, so the fast path is one
// atomic load. The first need opens it under a lock, so that threads that
// need it at the same moment all get the one converter and the ID counts one
// opening; a failed open stores nothing, and the next need tries again.
UConverter* DefaultConverter()
{
    UConverter* cnv = gDefaultConverter.load(std::memory_order_acquire);
    if (cnv)
        return cnv;
    std::lock_guard<std::mutex> lock(gConverterMutex);
    cnv = gDefaultConverter.load(std::memory_order_relaxed);
    if (cnv)
        return cnv;
    cnv = static_cast<UConverter*>(VORKMBConverterNew_C(nullptr));
    gDefaultConverterId.fetch_add(1);
    gDefaultConverter.store(cnv, std::memory_order_release);
    return cnv;
}

UConverter* ExistingDefaultConverter()
{
    return gDefaultConverter.load(std::memory_order_acquire);
}

} // namespace Internal

void EnableLocale()
{
    if (gLocaleEnabled.load(std::memory_order_acquire))
        return;
    std::lock_guard<std::mutex> lock(gLocaleMutex);
    EnableLocaleLocked();
}

const char* SystemEncoding()
{
    if (!gSystemEncodingReady.load(std::memory_order_acquire)) {
        std::lock_guard<std::mutex> lock(gLocaleMutex);
        if (!gSystemEncodingReady.load(std::memory_order_relaxed)) {
            EnableLocaleLocked();
            const char* ctype = Platform::SetLocale(LC_CTYPE, nullptr);
            const char* dot = ctype ? std::strchr(ctype, '.') : nullptr;
            try {
                if (!dot) {
                    gSystemEncoding = "CP1252";
                } else {
                    // The C library may add "@modifier" behind the code set;
                    // it is no part of the encoding's name.
                    gSystemEncoding.assign(dot + 1, std::strcspn(dot + 1, "@"));
                }
            } catch (...) {
                // No memory for the name: none this time, the next call tries
                // again.
                Internal::NoteNoMemory();
                return "";
            }
            gSystemEncodingReady.store(true, std::memory_order_release);
        }
    }
    return gSystemEncoding.c_str();
}

int qUTF8mode()
{
    return gUTF8mode.load(std::memory_order_relaxed);
}

void SetUTF8mode(int on)
{
    gUTF8mode.store(on ? 1 : 0, std::memory_order_relaxed);
}

UConverter* VORKMBGetDefaultConverter()
{
    return Internal::DefaultConverter();
}

int VORKMBDefaultConverterID()
{
    return gDefaultConverterId.load(std::memory_order_acquire);
}

} // namespace ZRMem
