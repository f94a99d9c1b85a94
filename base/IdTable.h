#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillon {

/// A hash set of 32-bit ids, each kept beside 32 bits of its hash. The caller keeps the keys.
///
/// The table is cut into segments that grow one by one, so that no single insertion moves a million
/// entries while a search waits.
class IdTable
{
public:
    /// An id is neither 0 nor the highest number.
    using Id = std::uint32_t;

    /// Returns the first id with this hash for which isMatch(id) holds, or 0.
    template <typename IsMatch>
    Id find(std::uint64_t hash, const IsMatch &isMatch) const;
    /// The id is not in the table.
    void insert(std::uint64_t hash, Id id);
    /// The id is in the table under this hash.
    void erase(std::uint64_t hash, Id id);
    void clear();
    /// Returns the bytes of memory held, including unused capacity.
    std::size_t bytes() const;

private:
    static constexpr unsigned SEGMENT_BITS = 8;
    static constexpr Id FREE = 0;
    static constexpr Id ERASED = ~Id{0};

    struct Slot
    {
        Id id = FREE;
        std::uint32_t hash = 0;
    };
    /// A segment is probed linearly. A larger segment has its slots in the same order, except those
    /// that wrapped around, so growing reads and writes memory from one end to the other.
    struct Segment
    {
        std::vector<Slot> slots;
        std::uint32_t notFree = 0;
        std::uint32_t live = 0;

        std::size_t home(std::uint32_t hash) const
        {
            return (std::uint64_t{hash} * slots.size()) >> 32;
        }
        std::size_t after(std::size_t slot) const
        {
            return slot + 1 == slots.size() ? 0 : slot + 1;
        }
        void put(Slot entry);
        void grow();
    };

    static std::size_t segmentOf(std::uint64_t hash) { return hash >> (64 - SEGMENT_BITS); }

    std::array<Segment, std::size_t{1} << SEGMENT_BITS> segments_;
};

template <typename IsMatch>
IdTable::Id IdTable::find(std::uint64_t hash, const IsMatch &isMatch) const
{
    const Segment &segment = segments_[segmentOf(hash)];
    if (segment.slots.empty())
        return 0;
    const auto wanted = static_cast<std::uint32_t>(hash);
    for (std::size_t at = segment.home(wanted); segment.slots[at].id != FREE;
         at = segment.after(at)) {
        const Slot slot = segment.slots[at];
        if (slot.hash == wanted && slot.id != ERASED && isMatch(slot.id))
            return slot.id;
    }
    return 0;
}

} // namespace quillon
