#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace quillon {

/// Who has which watch. The kernel hands numbers out one after the other, so what it gave for a
/// crawl fills whole pages; the few watches with several owners are kept apart. Not locked.
class WatchOwners
{
public:
    /// Zero is none.
    using Id = std::uint32_t;

    /// Returns true when nobody had the watch.
    bool add(int watch, Id owner);
    /// Returns true when nobody has it any more. It is the owner's.
    bool remove(int watch, Id owner);
    std::vector<Id> of(int watch) const;
    bool has(int watch) const { return first(watch) != 0; }
    /// Memory held, slack included.
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

    /// The owners by number; null where nobody has any of them.
    std::vector<std::unique_ptr<Page>> pages_;
    /// Owners besides the one in the page.
    std::unordered_multimap<int, Id> further_;
};

} // namespace quillon
