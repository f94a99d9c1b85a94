#include "core/FoundPaths.h"

namespace quillon {

CrawlSink::Token FoundPaths::root(const std::string &path)
{
    const MutexLock lock(mutex_);
    root_ = path == "/" ? "" : path;
    return ROOT;
}

void FoundPaths::add(Token parent, std::span<Entry> entries)
{
    const MutexLock lock(mutex_);
    for (Entry &entry : entries) {
        paths_.push_back({.nameOffset = names_.size(),
                          .nameSize = static_cast<std::uint32_t>(entry.name.size()),
                          .parent = parent,
                          .isFolder = entry.isFolder});
        names_ += entry.name;
        entry.token = last();
    }
}

std::string_view FoundPaths::name(Token path) const
{
    const Path &found = paths_[path - 1];
    return std::string_view(names_).substr(found.nameOffset, found.nameSize);
}

std::string FoundPaths::text(Token path) const
{
    std::vector<Token> way;
    for (; path != ROOT; path = parent(path))
        way.push_back(path);
    std::string text = root_;
    for (auto step = way.rbegin(); step != way.rend(); ++step)
        text.append("/").append(name(*step));
    return text;
}

} // namespace quillon
