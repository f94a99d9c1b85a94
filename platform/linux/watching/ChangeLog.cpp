#include "platform/linux/watching/ChangeLog.h"

#include "base/PathText.h"
#include "platform/FSEventStream.h"

#include <utility>

namespace quillon {

namespace {

/// Calls visit with each folder above an absolute path, "/" first, until it returns true. Returns
/// false if it never does.
template <typename Visit>
bool anyAbove(std::string_view path, const Visit &visit)
{
    for (std::size_t slash = path.find('/'); slash != std::string_view::npos && path.size() > 1;
         slash = path.find('/', slash + 1))
        if (visit(slash == 0 ? path.substr(0, 1) : path.substr(0, slash)))
            return true;
    return false;
}

} // namespace

void ChangeLog::add(const std::string &path, Found found, std::uint32_t flags)
{
    Entry &entry = entries_[path];
    entry.flags |= flags;
    entry.found = found;
}

void ChangeLog::compare(const std::string &path, Found found, std::uint32_t flags)
{
    if (items_.isIndexed(path) != (found != Found::nothing) || wasToldLately(path) ||
        !namesToldLately(path).empty())
        add(path, found, flags);
}

void ChangeLog::tellAgain(std::string_view path)
{
    for (auto told = told_.lower_bound(path); told != told_.end() && told->first.starts_with(path);
         ++told)
        if (isAtOrBelow(told->first, path))
            add(told->first, Found::item, told->second.flags);
}

bool ChangeLog::wasToldLately(std::string_view path) const
{
    const auto isTold = [this](std::string_view above) { return told_.contains(above); };
    return isTold(path) || anyAbove(path, isTold);
}

std::set<std::string> ChangeLog::namesToldLately(std::string_view folder) const
{
    const std::string prefix = pathIn(folder, {});
    std::set<std::string> names;
    for (auto told = told_.lower_bound(prefix);
         told != told_.end() && told->first.starts_with(prefix); ++told)
        names.insert(told->first.substr(prefix.size(),
                                        told->first.find('/', prefix.size()) - prefix.size()));
    return names;
}

ChangeLog::Entry *ChangeLog::covering(std::string_view path)
{
    Entry *cover = nullptr;
    anyAbove(path, [&](std::string_view above) {
        const auto entry = entries_.find(above);
        if (entry != entries_.end() && entry->second.found == Found::folder)
            cover = &entry->second;
        return cover != nullptr;
    });
    return cover;
}

std::vector<ChangeLog::Change> ChangeLog::take(Clock::time_point now)
{
    std::erase_if(told_, [now](const auto &told) { return now - told.second.at > SETTLED; });
    // A covered folder covers only what its own cover covers too.
    for (auto &[path, entry] : entries_)
        if (Entry *cover = covering(path))
            cover->flags |= entry.flags;
    std::vector<Change> changes;
    for (const auto &[path, entry] : entries_)
        if (covering(path) == nullptr)
            changes.push_back({path, entry.flags});
    entries_.clear();
    for (const Change &change : changes)
        told_.insert_or_assign(change.path, LastReport{change.flags, now});
    return changes;
}

} // namespace quillon
