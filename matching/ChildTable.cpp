#include "matching/ChildTable.h"

#include "platform/Require.h"

namespace quillon {

void ChildTable::Segment::put(std::uint64_t hash, Id id)
{
    std::size_t slot = slotOf(hash);
    while (tags[slot] > ERASED)
        slot = next(slot);
    if (tags[slot] == FREE)
        ++taken;
    tags[slot] = tagOf(hash);
    ids[slot] = id;
    ++live;
}

void ChildTable::erase(std::uint64_t hash, Id id)
{
    Segment &segment = segments_[segmentOf(hash)];
    require(segment.live > 0, "an erased id is in the table");
    std::size_t slot = segment.slotOf(hash);
    while (segment.tags[slot] <= ERASED || segment.ids[slot] != id) {
        require(segment.tags[slot] != FREE, "an erased id is in the table");
        slot = segment.next(slot);
    }
    // Nothing is looked for past a free slot, so in front of one the mark is not needed.
    const bool isLast = segment.tags[segment.next(slot)] == FREE;
    segment.tags[slot] = isLast ? FREE : ERASED;
    segment.taken -= isLast ? 1 : 0;
    --segment.live;
}

void ChildTable::clear()
{
    segments_ = {};
}

std::size_t ChildTable::bytes() const
{
    std::size_t bytes = sizeof(*this);
    for (const Segment &segment : segments_)
        bytes += segment.capacity * (sizeof(std::uint8_t) + sizeof(Id));
    return bytes;
}

} // namespace quillon
