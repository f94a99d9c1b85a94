#include "indexing/CrawlStack.h"

#include "platform/FolderLister.h"

#include <algorithm>
#include <utility>

namespace quillon {

std::string CrawlItem::path() const
{
    return parent ? parent->path() + "/" + name : name;
}

void CrawlStack::push(CrawlFolder::Ref folder, std::shared_ptr<const OpenFolder> handle,
                      const std::vector<Child> &children)
{
    Level level{std::move(folder), std::move(handle), {}, {}, 0};
    level.children.reserve(children.size());
    for (const Child &child : children) {
        level.children.push_back({level.names.size(), child.name.size(), child.token, child.state});
        level.names += child.name;
    }
    add(std::move(level));
}

void CrawlStack::add(Level level)
{
    pending_ += level.children.size() - level.next;
    levels_.push_back(std::move(level));
    closeSurplus();
}

void CrawlStack::closeSurplus()
{
    while (levels_.size() - lowestOpen_ > maxOpen_)
        levels_[lowestOpen_++].handle.reset();
}

void CrawlStack::setMaxOpen(std::size_t count)
{
    maxOpen_ = count;
    closeSurplus();
}

bool CrawlStack::take(CrawlItem &item)
{
    while (!levels_.empty() && levels_.back().isEmpty())
        levels_.pop_back();
    if (levels_.empty())
        return false;
    Level &level = levels_.back();
    const StoredChild &child = level.children.back();
    item.name.assign(level.names, child.nameOffset, child.nameSize);
    item.token = child.token;
    item.state = child.state;
    item.parent = level.folder;
    level.children.pop_back();
    --pending_;
    if (level.isEmpty()) {
        // The folder is closed as soon as its last subfolder is open, so a chain of any length
        // holds only two descriptors.
        item.parentHandle = std::move(level.handle);
        levels_.pop_back();
    } else {
        item.parentHandle = level.handle;
    }
    lowestOpen_ = std::min(lowestOpen_, levels_.size());
    return true;
}

void CrawlStack::share(CrawlStack &other)
{
    const auto level =
        std::ranges::find_if(levels_, [](const Level &candidate) { return !candidate.isEmpty(); });
    if (level == levels_.end())
        return;
    const std::size_t count = (level->children.size() - level->next + 1) / 2;
    Level given{level->folder, level->handle, {}, {}, 0};
    given.children.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        StoredChild child = level->children[level->next++];
        const std::size_t offset = given.names.size();
        given.names.append(level->names, child.nameOffset, child.nameSize);
        child.nameOffset = offset;
        given.children.push_back(child);
    }
    pending_ -= count;
    other.add(std::move(given));
}

void CrawlStack::reopened(std::size_t &position, const CrawlFolder &folder,
                          const std::shared_ptr<const OpenFolder> &handle)
{
    // Not every folder on the way down still has subfolders to visit.
    if (position == levels_.size() || levels_[position].folder.get() != &folder)
        return;
    if (levels_.size() - position <= maxOpen_ / 2) {
        levels_[position].handle = handle;
        lowestOpen_ = std::min(lowestOpen_, position);
    }
    ++position;
}

} // namespace quillon
