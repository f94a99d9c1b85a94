#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace quillon {

/// The owners of each watch. The kernel assigns numbers one after the other, so the watches of a
/// crawl fill whole pages. The few watches with several owners are kept apart. Not locked.
class WatchOwners
{
public:
    /// Zero means no owner.
    using Id = std::uint32_t;

    /// Adds an owner. Returns true when nobody had the watch.
    bool add(int watch, Id owner);
    /// Removes an owner, who has the watch. Returns true when nobody has it any more.
    bool remove(int watch, Id owner);
    std::vector<Id> of(int watch) const;
    bool has(int watch) const { return first(watch) != 0; }
    /// Returns the bytes of memory held, including unused capacity.
    std::size_t bytes() const;

private:
    static constexpr std::size_t PAGE_SIZE = 1024;
    struct Page
    {
        std::array<Id, PAGE_SIZE> owners = {};
        std::size_t used = 0;
    };

    static std::size_t pageOf(int watch) { return static_cast<std::size_t>(watch) / PAGE_SIZE; }
    static std::size_t placeOf(int watch) { return static_cast<std::size_t>(watch) % PAGE_SIZE; }
    Id first(int watch) const;

    /// The owners by number; null when nobody has any of a page's watches.
    std::vector<std::unique_ptr<Page>> pages_;
    /// The owners besides the one in the page.
    std::unordered_multimap<int, Id> further_;
};

} // namespace quillon
