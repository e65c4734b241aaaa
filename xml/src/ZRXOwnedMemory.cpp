#include "ZRXOwnedMemory.h"

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <cstddef>
#include <new>

namespace ZRXPrsUtil {

ZRXOwnedMemory::ZRXOwnedMemory() : m_blocks{&m_blocks, &m_blocks}
{
    static_assert(sizeof(Link) % alignof(std::max_align_t) == 0,
                  "a block behind its link keeps the alignment of operator new");
}

ZRXOwnedMemory::~ZRXOwnedMemory()
{
    while (m_blocks.next != &m_blocks)
        deallocate(m_blocks.next + 1);
}

xercesc::MemoryManager* ZRXOwnedMemory::getExceptionMemoryManager()
{
    return xercesc::XMLPlatformUtils::fgMemoryManager;
}

void* ZRXOwnedMemory::allocate(XMLSize_t size)
{
    Link* link = nullptr;
    try {
        link = static_cast<Link*>(::operator new(sizeof(Link) + size));
    } catch (const std::bad_alloc&) {
        throw xercesc::OutOfMemoryException();
    }
    link->previous = &m_blocks;
    link->next = m_blocks.next;
    m_blocks.next->previous = link;
    m_blocks.next = link;
    return link + 1;
}

void ZRXOwnedMemory::deallocate(void* block)
{
    if (block == nullptr)
        return;
    Link* link = static_cast<Link*>(block) - 1;
    link->previous->next = link->next;
    link->next->previous = link->previous;
    ::operator delete(link);
}

} // namespace ZRXPrsUtil
