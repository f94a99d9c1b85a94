#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace quillon {

/// Byte strings in one growing block of memory, each found by its offset. The length is the
/// caller's to keep. Grows by whole chunks, never by copying; at most 4 GiB.
class NameArena
{
public:
    using Offset = std::uint32_t;

    Offset store(std::string_view name);
    const char *at(Offset offset) const
    {
        return chunks_[offset >> CHUNK_BITS] + (offset & (CHUNK_SIZE - 1));
    }
    /// Gives the room of a name back, for a later one of the same length. Names longer than any
    /// file name keep theirs.
    void release(Offset offset, std::size_t length);
    void clear();
    /// Memory held, slack included.
    std::size_t bytes() const;

private:
    static constexpr unsigned CHUNK_BITS = 18;
    static constexpr std::size_t CHUNK_SIZE = std::size_t{1} << CHUNK_BITS;
    /// File systems allow 255 bytes a name.
    static constexpr std::size_t LONGEST_REUSED = 255;
    /// A released room holds the offset of the next one of its length.
    static constexpr std::size_t SHORTEST_ROOM = sizeof(Offset);
    static constexpr Offset NO_ROOM = ~Offset{0};

    static constexpr std::size_t roomFor(std::size_t length)
    {
        return length < SHORTEST_ROOM ? SHORTEST_ROOM : length;
    }
    void grow(std::size_t room);
    char *writable(Offset offset);

    struct Block
    {
        std::unique_ptr<char[]> memory;
        std::size_t size = 0;
    };
    std::vector<Block> blocks_;
    /// One entry for each CHUNK_SIZE of offsets; a block larger than a chunk has several.
    std::vector<const char *> chunks_;
    std::size_t used_ = 0;
    std::array<Offset, LONGEST_REUSED + 1> released_ = noRooms();

    static std::array<Offset, LONGEST_REUSED + 1> noRooms();
};

} // namespace quillon
