#include "base/NameArena.h"

#include "base/Require.h"

#include <cstring>

namespace quillon {

std::array<NameArena::Offset, NameArena::LONGEST_REUSED + 1> NameArena::noRooms()
{
    std::array<Offset, LONGEST_REUSED + 1> rooms;
    rooms.fill(NO_ROOM);
    return rooms;
}

char *NameArena::writable(Offset offset)
{
    return const_cast<char *>(at(offset)); // the blocks are ours and not const
}

NameArena::Offset NameArena::store(std::string_view name)
{
    const std::size_t room = roomFor(name.size());
    if (room <= LONGEST_REUSED && released_[room] != NO_ROOM) {
        const Offset offset = released_[room];
        std::memcpy(&released_[room], at(offset), sizeof(Offset));
        std::memcpy(writable(offset), name.data(), name.size());
        return offset;
    }
    if (used_ + room > chunks_.size() * CHUNK_SIZE)
        grow(room);
    const auto offset = static_cast<Offset>(used_);
    if (!name.empty())
        std::memcpy(writable(offset), name.data(), name.size());
    used_ += room;
    return offset;
}

void NameArena::grow(std::size_t room)
{
    const std::size_t chunks = (room + CHUNK_SIZE - 1) / CHUNK_SIZE;
    require(chunks_.size() + chunks <= (std::size_t{1} << (32 - CHUNK_BITS)),
            "the names of an index fit in 4 GiB");
    used_ = chunks_.size() * CHUNK_SIZE;
    const std::size_t size = chunks * CHUNK_SIZE;
    blocks_.push_back({std::make_unique_for_overwrite<char[]>(size), size});
    for (std::size_t i = 0; i < chunks; ++i)
        chunks_.push_back(blocks_.back().memory.get() + i * CHUNK_SIZE);
}

void NameArena::release(Offset offset, std::size_t length)
{
    const std::size_t room = roomFor(length);
    if (room > LONGEST_REUSED)
        return;
    std::memcpy(writable(offset), &released_[room], sizeof(Offset));
    released_[room] = offset;
}

void NameArena::clear()
{
    blocks_.clear();
    chunks_.clear();
    used_ = 0;
    released_ = noRooms();
}

std::size_t NameArena::bytes() const
{
    std::size_t bytes = sizeof(*this) + blocks_.capacity() * sizeof(Block) +
                        chunks_.capacity() * sizeof(chunks_[0]);
    for (const Block &block : blocks_)
        bytes += block.size;
    return bytes;
}

} // namespace quillon
