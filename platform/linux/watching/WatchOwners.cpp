#include "platform/linux/watching/WatchOwners.h"

#include "base/Require.h"

#include <algorithm>
#include <utility>

namespace quillon {

WatchOwners::Id WatchOwners::first(int watch) const
{
    const std::size_t page = pageOf(watch);
    return page < pages_.size() && pages_[page] ? pages_[page]->owners[placeOf(watch)] : 0;
}

bool WatchOwners::add(int watch, Id owner)
{
    if (has(watch)) {
        further_.emplace(watch, owner);
        return false;
    }
    const std::size_t page = pageOf(watch);
    if (page >= pages_.size())
        pages_.resize(page + 1);
    if (!pages_[page])
        pages_[page] = std::make_unique<Page>();
    pages_[page]->owners[placeOf(watch)] = owner;
    ++pages_[page]->used;
    return true;
}

bool WatchOwners::remove(int watch, Id owner)
{
    const auto [begin, end] = further_.equal_range(watch);
    auto other = std::find_if(begin, end, [&](const auto &entry) { return entry.second == owner; });
    if (other != end) {
        further_.erase(other);
        return false;
    }
    require(first(watch) == owner, "a watch is taken from one who has it");
    std::unique_ptr<Page> &page = pages_[pageOf(watch)];
    Id &place = page->owners[placeOf(watch)];
    if (begin != end) {
        place = begin->second;
        further_.erase(begin);
        return false;
    }
    place = 0;
    if (--page->used == 0)
        page.reset();
    return true;
}

std::vector<WatchOwners::Id> WatchOwners::of(int watch) const
{
    std::vector<Id> owners;
    if (watch >= 0 && has(watch))
        owners.push_back(first(watch));
    const auto [begin, end] = further_.equal_range(watch);
    for (auto other = begin; other != end; ++other)
        owners.push_back(other->second);
    return owners;
}

std::size_t WatchOwners::bytes() const
{
    const auto pages =
        std::ranges::count_if(pages_, [](const auto &page) { return page != nullptr; });
    return pages_.capacity() * sizeof(pages_[0]) + static_cast<std::size_t>(pages) * sizeof(Page) +
           further_.size() * (sizeof(std::pair<int, Id>) + 2 * sizeof(void *)) +
           further_.bucket_count() * sizeof(void *);
}

} // namespace quillon
