// The positions of a list's variables by name.
#ifndef ZRCOMMONR_ZRNAMEINDEX_H
#define ZRCOMMONR_ZRNAMEINDEX_H

#include <zrcommonr/ZRNamespaces.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ZRMTD_NAMESPACE {

// An open-addressed table of (hash, position) pairs with linear probing; the
// names themselves stay with the variables, reached through `nameAt`
// (position -> name) only when a hash matches. A list of a hundred thousand
// variables keeps its whole index in two megabytes, with no block allocated
// per name: a table of nodes scattered through the heap made each addition to
// a long list wait on memory, so that filling a list took longer per
// variable the longer the list grew.
class ZRNameIndex {
public:
    // The position filed under `name`, or -1.
    template <class NameAt>
    int Find(const std::string& name, NameAt nameAt) const
    {
        if (slots.empty())
            return -1;
        bool found = false;
        const std::size_t slot = Probe(name, Hash(name), nameAt, found);
        return found ? slots[slot].position : -1;
    }

    // Files `position` under `name`; false, with nothing filed, when the name
    // is filed already.
    template <class NameAt>
    bool Insert(const std::string& name, int position, NameAt nameAt)
    {
        if (2 * (used + 1) > slots.size())
            Grow();
        const std::uint32_t hash = Hash(name);
        bool found = false;
        const std::size_t slot = Probe(name, hash, nameAt, found);
        if (found)
            return false;
        slots[slot] = Slot{hash, position};
        ++used;
        return true;
    }

    // Removes `position` from under `name`, if it is filed there.
    template <class NameAt>
    void Erase(const std::string& name, int position, NameAt nameAt)
    {
        if (slots.empty())
            return;
        bool found = false;
        std::size_t hole = Probe(name, Hash(name), nameAt, found);
        if (!found || slots[hole].position != position)
            return;
        // Backward shift: every entry of the run after the hole that may sit
        // there (its home is not inside the cycle from the hole to it) moves
        // up, so that no later search stops short at the hole.
        for (std::size_t next = (hole + 1) & Mask(); slots[next].position >= 0;
             next = (next + 1) & Mask()) {
            const std::size_t home = slots[next].hash & Mask();
            const bool homeBetween =
                hole <= next ? (hole < home && home <= next) : (hole < home || home <= next);
            if (!homeBetween) {
                slots[hole] = slots[next];
                hole = next;
            }
        }
        slots[hole] = Slot{};
        --used;
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::int32_t position = -1;
    };

    // The slot that files `name` (`found`) or else the empty slot that ends
    // its run. The table is not empty.
    template <class NameAt>
    std::size_t Probe(const std::string& name, std::uint32_t hash, NameAt nameAt, bool& found) const
    {
        std::size_t i = hash & Mask();
        for (; slots[i].position >= 0; i = (i + 1) & Mask()) {
            if (slots[i].hash == hash && nameAt(slots[i].position) == name) {
                found = true;
                return i;
            }
        }
        found = false;
        return i;
    }

    static std::uint32_t Hash(const std::string& name)
    {
        const std::uint64_t full = std::hash<std::string>()(name);
        return static_cast<std::uint32_t>(full ^ (full >> 32));
    }
    std::size_t Mask() const { return slots.size() - 1; }

    void Place(const Slot& slot)
    {
        std::size_t i = slot.hash & Mask();
        while (slots[i].position >= 0)
            i = (i + 1) & Mask();
        slots[i] = slot;
    }

    void Grow()
    {
        std::vector<Slot> old(slots.empty() ? 16 : 2 * slots.size());
        old.swap(slots);
        for (const Slot& slot : old)
            if (slot.position >= 0)
                Place(slot);
    }

    std::vector<Slot> slots;
    std::size_t used = 0;
};

} // namespace ZRMTD_NAMESPACE

#endif
