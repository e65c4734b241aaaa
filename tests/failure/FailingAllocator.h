// Allocations that fail on request: this test program replaces operator new
// (through which the XML library's memory manager allocates too) and hands
// ICU allocation functions of its own, so that the k-th allocation of either
// kind on this thread fails: operator new throws std::bad_alloc, ICU gets
// null and reports U_MEMORY_ALLOCATION_ERROR. FAILTEST_TRAP=k in the
// environment stops at the k-th allocation (in a debugger) when it fails.
#ifndef ZRX_TESTS_FAILINGALLOCATOR_H
#define ZRX_TESTS_FAILINGALLOCATOR_H

namespace failtest {

// Counts allocations on this thread from now on and makes the k-th fail
// (only that one); 0 counts nothing and fails nothing.
void FailAllocation(long k);
// True once the allocation chosen by the last FailAllocation other than 0
// has failed.
bool Failed();
// Blocks of either kind allocated and not yet freed, in the whole process.
long LiveBlocks();

// Allocations of the test's own making, not counted while this lives.
class Uncounted {
public:
    Uncounted();
    ~Uncounted();
    Uncounted(const Uncounted&) = delete;
    Uncounted& operator=(const Uncounted&) = delete;
};

} // namespace failtest

#endif
