#pragma once

#include "base/IdTable.h"
#include "base/NameArena.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace quillon {

/// Keeps each name once, however many folders have it, and finds it by an id: of the folders of a
/// home directory most are named like others. Not synchronised.
class NameTable
{
public:
    /// NONE stands for no name.
    using Id = std::uint32_t;
    static constexpr Id NONE = 0;

    /// Returns the id of a name, which is stored where it is new. One more folder has it.
    Id take(std::string_view name);
    /// One folder less has the name. When none is left, the id may stand for another name later.
    void release(Id id);
    std::string_view name(Id id) const
    {
        const Entry &entry = this->entry(id);
        return {bytes_.at(entry.bytes), entry.length};
    }
    /// Returns the name as foldedText() folds it, of the same length.
    std::string_view folded(Id id) const
    {
        const Entry &entry = this->entry(id);
        return {bytes_.at(entry.bytes) + (entry.isFolded ? entry.length : 0), entry.length};
    }
    bool isFolded(Id id) const { return entry(id).isFolded; }
    /// Returns how many folders have the name.
    std::uint32_t uses(Id id) const { return entry(id).uses; }
    void clear();
    /// Returns the bytes of memory held, including unused capacity.
    std::size_t bytes() const;

private:
    struct Entry
    {
        NameArena::Offset bytes = 0;
        std::uint32_t length : 31 = 0;
        /// The folded name stands behind the name.
        bool isFolded : 1 = false;
        std::uint32_t uses = 0;
    };
    static constexpr unsigned CHUNK_BITS = 10;
    using Chunk = std::array<Entry, std::size_t{1} << CHUNK_BITS>;

    const Entry &entry(Id id) const
    {
        return (*chunks_[id >> CHUNK_BITS])[id & (std::tuple_size_v<Chunk> - 1)];
    }
    Entry &mutableEntry(Id id) { return const_cast<Entry &>(entry(id)); } // the chunks are ours
    Id allocate();

    NameArena bytes_;
    std::vector<std::unique_ptr<Chunk>> chunks_;
    /// Every id in use is below this number.
    Id end_ = NONE + 1;
    std::vector<Id> free_;
    IdTable ids_;
};

} // namespace quillon
