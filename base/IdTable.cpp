#include "base/IdTable.h"

#include "base/Require.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

constexpr std::size_t SMALLEST_CAPACITY = 8;

} // namespace

void IdTable::Segment::put(Slot entry)
{
    std::size_t at = home(entry.hash);
    while (slots[at].id != FREE && slots[at].id != ERASED)
        at = after(at);
    notFree += slots[at].id == FREE ? 1U : 0U;
    slots[at] = entry;
    ++live;
}

void IdTable::Segment::grow()
{
    // The new size is 15/8 of what is used, so the load lies between 53 % and 80 %.
    Segment larger;
    larger.slots.resize(std::max(SMALLEST_CAPACITY, (std::size_t{live} + 1) * 15 / 8));
    for (const Slot slot : slots) {
        if (slot.id != FREE && slot.id != ERASED)
            larger.put(slot);
    }
    *this = std::move(larger);
}

void IdTable::insert(std::uint64_t hash, Id id)
{
    Segment &segment = segments_[segmentOf(hash)];
    if ((std::size_t{segment.notFree} + 1) * 5 > segment.slots.size() * 4)
        segment.grow();
    segment.put({id, static_cast<std::uint32_t>(hash)});
}

void IdTable::erase(std::uint64_t hash, Id id)
{
    Segment &segment = segments_[segmentOf(hash)];
    require(segment.live > 0, "an erased id is in the table");
    std::size_t at = segment.home(static_cast<std::uint32_t>(hash));
    while (segment.slots[at].id != id) {
        require(segment.slots[at].id != FREE, "an erased id is in the table");
        at = segment.after(at);
    }
    // A search ends at a free slot, so a slot in front of one needs no mark.
    const bool isLast = segment.slots[segment.after(at)].id == FREE;
    segment.slots[at].id = isLast ? FREE : ERASED;
    segment.notFree -= isLast ? 1U : 0U;
    --segment.live;
}

void IdTable::clear()
{
    segments_ = {};
}

std::size_t IdTable::bytes() const
{
    std::size_t bytes = sizeof(*this);
    for (const Segment &segment : segments_)
        bytes += segment.slots.capacity() * sizeof(Slot);
    return bytes;
}

} // namespace quillon
