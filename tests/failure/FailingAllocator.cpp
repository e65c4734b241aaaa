#include "FailingAllocator.h"

#include <unicode/uclean.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace failtest {
namespace {

thread_local long tTarget = 0;
thread_local long tCount = 0;
thread_local bool tFailed = false;
thread_local int tUncounted = 0;
std::atomic<long> gLive{0};

// True when this allocation is the one to fail.
bool FailNow()
{
    if (tTarget == 0 || tUncounted > 0 || ++tCount != tTarget)
        return false;
    tFailed = true;
    if (const char* trap = std::getenv("FAILTEST_TRAP"))
        if (std::atol(trap) == tTarget)
            __builtin_trap();
    return true;
}

void* Allocate(std::size_t size, std::size_t alignment = 0)
{
    if (FailNow())
        return nullptr;
    void* block = nullptr;
    if (alignment <= alignof(std::max_align_t))
        block = std::malloc(size == 0 ? 1 : size);
    else if (posix_memalign(&block, alignment, size == 0 ? 1 : size) != 0)
        block = nullptr;
    if (block != nullptr)
        ++gLive;
    return block;
}

void Free(void* block)
{
    if (block != nullptr) {
        --gLive;
        std::free(block);
    }
}

void* Throwing(std::size_t size, std::size_t alignment = 0)
{
    if (void* block = Allocate(size, alignment))
        return block;
    throw std::bad_alloc();
}

void* U_CALLCONV IcuAlloc(const void*, size_t size)
{
    return Allocate(size);
}

void* U_CALLCONV IcuRealloc(const void*, void* block, size_t size)
{
    if (block == nullptr)
        return Allocate(size);
    if (FailNow())
        return nullptr;
    return std::realloc(block, size);
}

void U_CALLCONV IcuFree(const void*, void* block)
{
    Free(block);
}

// ICU takes its allocation functions before the first test runs.
const bool gIcuHooked = [] {
    UErrorCode status = U_ZERO_ERROR;
    u_setMemoryFunctions(nullptr, IcuAlloc, IcuRealloc, IcuFree, &status);
    return U_SUCCESS(status);
}();

} // namespace

void FailAllocation(long k)
{
    tTarget = k;
    tCount = 0;
    if (k != 0)
        tFailed = false;
}

bool Failed()
{
    return tFailed;
}

long LiveBlocks()
{
    return gLive.load();
}

Uncounted::Uncounted()
{
    ++tUncounted;
}

Uncounted::~Uncounted()
{
    --tUncounted;
}

} // namespace failtest

// Every form of operator new and delete is replaced: a sanitizer's runtime
// has its own forms, and a block must be freed by the form that made it.
#define FAILTEST_NEW(except, allocate, ...)                                                        \
    void* operator new(__VA_ARGS__) except                                                         \
    {                                                                                              \
        return allocate;                                                                           \
    }                                                                                              \
    void* operator new[](__VA_ARGS__) except                                                       \
    {                                                                                              \
        return allocate;                                                                           \
    }
#define FAILTEST_DELETE(...)                                                                       \
    void operator delete(__VA_ARGS__) noexcept                                                     \
    {                                                                                              \
        failtest::Free(block);                                                                     \
    }                                                                                              \
    void operator delete[](__VA_ARGS__) noexcept                                                   \
    {                                                                                              \
        failtest::Free(block);                                                                     \
    }

FAILTEST_NEW(, failtest::Throwing(size), std::size_t size)
FAILTEST_NEW(, failtest::Throwing(size, static_cast<std::size_t>(al)), std::size_t size,
             std::align_val_t al)
FAILTEST_NEW(noexcept, failtest::Allocate(size), std::size_t size, const std::nothrow_t&)
FAILTEST_NEW(noexcept, failtest::Allocate(size, static_cast<std::size_t>(al)), std::size_t size,
             std::align_val_t al, const std::nothrow_t&)
FAILTEST_DELETE(void* block)
FAILTEST_DELETE(void* block, std::size_t)
FAILTEST_DELETE(void* block, std::align_val_t)
FAILTEST_DELETE(void* block, std::size_t, std::align_val_t)
FAILTEST_DELETE(void* block, const std::nothrow_t&)
