#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace quillon {

/// A hash set of 32-bit ids that keeps neither keys nor hashes, only a byte of each hash: 5 bytes
/// a slot. The caller hashes and compares.
///
/// The table is cut into segments that grow one by one, so that no single insertion rehashes a
/// million entries while a search waits.
class ChildTable
{
public:
    using Id = std::uint32_t;

    /// The first id with this hash for which isMatch(id) holds, or 0.
    template <typename IsMatch>
    Id find(std::uint64_t hash, const IsMatch &isMatch) const;
    /// id is not 0 and not present. hashOf(id) gives the hash of ids inserted before.
    template <typename HashOf>
    void insert(std::uint64_t hash, Id id, const HashOf &hashOf);
    /// id is present under this hash.
    void erase(std::uint64_t hash, Id id);
    void clear();
    /// Memory held, slack included.
    std::size_t bytes() const;

private:
    static constexpr unsigned SEGMENT_BITS = 8;
    static constexpr std::size_t SMALLEST_CAPACITY = 16;
    static constexpr std::uint8_t FREE = 0;
    static constexpr std::uint8_t ERASED = 1;

    struct Segment
    {
        std::unique_ptr<std::uint8_t[]> tags;
        std::unique_ptr<Id[]> ids;
        std::uint32_t capacity = 0;
        /// Slots that are not FREE.
        std::uint32_t taken = 0;
        std::uint32_t live = 0;

        std::size_t slotOf(std::uint64_t hash) const { return hash & (capacity - 1); }
        std::size_t next(std::size_t slot) const { return (slot + 1) & (capacity - 1); }
        void put(std::uint64_t hash, Id id);
    };

    static std::size_t segmentOf(std::uint64_t hash) { return hash >> (64 - SEGMENT_BITS); }
    static std::uint8_t tagOf(std::uint64_t hash)
    {
        const auto tag = static_cast<std::uint8_t>(hash >> 48);
        return tag > ERASED ? tag : static_cast<std::uint8_t>(tag + 2);
    }
    template <typename HashOf>
    static void grow(Segment &segment, const HashOf &hashOf);

    std::array<Segment, std::size_t{1} << SEGMENT_BITS> segments_;
};

template <typename IsMatch>
ChildTable::Id ChildTable::find(std::uint64_t hash, const IsMatch &isMatch) const
{
    const Segment &segment = segments_[segmentOf(hash)];
    if (segment.capacity == 0)
        return 0;
    const std::uint8_t tag = tagOf(hash);
    for (std::size_t slot = segment.slotOf(hash); segment.tags[slot] != FREE;
         slot = segment.next(slot)) {
        if (segment.tags[slot] == tag && isMatch(segment.ids[slot]))
            return segment.ids[slot];
    }
    return 0;
}

template <typename HashOf>
void ChildTable::insert(std::uint64_t hash, Id id, const HashOf &hashOf)
{
    Segment &segment = segments_[segmentOf(hash)];
    if ((segment.taken + 1) * 5 > segment.capacity * 4)
        grow(segment, hashOf);
    segment.put(hash, id);
}

template <typename HashOf>
void ChildTable::grow(Segment &segment, const HashOf &hashOf)
{
    Segment larger;
    larger.capacity = SMALLEST_CAPACITY;
    while (larger.capacity * 11 < (segment.live + 1) * 20)
        larger.capacity *= 2;
    larger.tags = std::make_unique<std::uint8_t[]>(larger.capacity);
    larger.ids = std::make_unique_for_overwrite<Id[]>(larger.capacity);
    for (std::size_t slot = 0; slot < segment.capacity; ++slot) {
        if (segment.tags[slot] > ERASED)
            larger.put(hashOf(segment.ids[slot]), segment.ids[slot]);
    }
    segment = std::move(larger);
}

} // namespace quillon
