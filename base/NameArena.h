#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace quillon {

/// Keeps byte strings in one growing block of memory and finds each by its offset. The caller keeps
/// the lengths. The arena grows by whole chunks, never by copying, to 4 GiB at most.
class NameArena
{
public:
    using Offset = std::uint32_t;

    Offset store(std::string_view name);
    const char *at(Offset offset) const
    {
        return chunks_[offset >> CHUNK_BITS] + (offset & (CHUNK_SIZE - 1));
    }
    /// Releases the room of a name for a later name of the same length. Names that are longer than
    /// any file name keep their room.
    void release(Offset offset, std::size_t length);
    void clear();
    /// Returns the bytes of memory held, including unused capacity.
    std::size_t bytes() const;

private:
    static constexpr unsigned CHUNK_BITS = 18;
    static constexpr std::size_t CHUNK_SIZE = std::size_t{1} << CHUNK_BITS;
    /// Most file systems allow names of 255 bytes, and some names are kept in two forms.
    static constexpr std::size_t LONGEST_REUSED = 2 * std::size_t{255};
    /// A released room holds the offset of the next released room of its length.
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
    /// There is one entry for each CHUNK_SIZE of offsets; a block larger than a chunk has several.
    std::vector<const char *> chunks_;
    std::size_t used_ = 0;
    std::array<Offset, LONGEST_REUSED + 1> released_ = noRooms();

    static std::array<Offset, LONGEST_REUSED + 1> noRooms();
};

} // namespace quillon
