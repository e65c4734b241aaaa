// ZRXOwnedMemory: a memory manager for the XML library that owns every block
// it hands out until it is destroyed. Internal, not exported.
//
// The XML library's constructors are not all safe when an allocation fails
// in them: a constructor that has allocated some of its members and then
// fails loses those (a DTD grammar its declaration pools, for one), and a
// parser that a failed allocation ended is left half set up. Each parser of
// the library therefore allocates through a manager of its own, which keeps
// its live blocks in a list: whatever the parser and its documents lose on
// such a failure is freed with the manager, right after the parser. Nothing
// allocated through it may outlive it; exceptions of the XML library are
// made with the process-wide manager, as they may leave the parser.
//
// Blocks come from operator new, as those of the XML library's own manager,
// and a failed allocation throws the XML library's OutOfMemoryException, as
// that manager does. One object serves one thread at a time.
#ifndef ZRPARSEXMLR_ZRXOWNEDMEMORY_H
#define ZRPARSEXMLR_ZRXOWNEDMEMORY_H

#include <xercesc/framework/MemoryManager.hpp>

namespace ZRXPrsUtil {

class ZRXOwnedMemory : public xercesc::MemoryManager {
public:
    ZRXOwnedMemory();
    // Frees every block still allocated.
    ~ZRXOwnedMemory() override;
    ZRXOwnedMemory(const ZRXOwnedMemory&) = delete;
    ZRXOwnedMemory& operator=(const ZRXOwnedMemory&) = delete;

    xercesc::MemoryManager* getExceptionMemoryManager() override;
    void* allocate(XMLSize_t size) override;
    void deallocate(void* block) override;

private:
    struct Link {
        Link* previous;
        Link* next;
    };
    Link m_blocks; // the ring of live blocks, each behind its link
};

} // namespace ZRXPrsUtil

#endif
