#include "core/IndexSink.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quillon {

IndexSink::IndexSink(SearchBasePaths &paths, std::stop_token isReset, CrawlMarks *marks)
    : paths_(paths), isReset_(std::move(isReset)), marks_(marks)
{}

CrawlSink::Token IndexSink::root(const std::string &path)
{
    const WritingIndex writing(paths_.lock());
    if (isReset_.stop_requested())
        return PathTree::NONE;
    paths_.mutableTree().insert(normalizePath(path), PathTree::CANDIDATE);
    return paths_.add(path);
}

void IndexSink::add(Token parent, std::span<Entry> entries)
{
    if (std::ranges::none_of(entries, &Entry::isFolder)) {
        Files many;
        {
            const MutexLock lock(mutex_);
            for (const Entry &entry : entries) {
                waiting_.files.push_back({parent, entry.name.size()});
                waiting_.names += entry.name;
            }
            if (waiting_.files.size() < PathIndex::SLICE)
                return;
            many = std::exchange(waiting_, {});
        }
        insert(many);
        return;
    }
    while (!entries.empty()) {
        const std::span<Entry> some = takeSlice(entries);
        const WritingIndex writing(paths_.lock());
        if (isReset_.stop_requested())
            return;
        for (Entry &entry : some)
            put(parent, entry);
        if (marks_ != nullptr)
            marks_->takeKinds(some);
    }
}

void IndexSink::insert(const Files &files)
{
    std::vector<Entry> entries;
    std::string_view names = files.names;
    std::span<const Files::File> rest = files.files;
    while (!rest.empty()) {
        entries.clear();
        const auto some = takeSlice(rest);
        const WritingIndex writing(paths_.lock());
        if (isReset_.stop_requested())
            return;
        for (const Files::File &file : some) {
            entries.push_back({.name = names.substr(0, file.nameSize)});
            names.remove_prefix(file.nameSize);
            put(file.parent, entries.back());
        }
        if (marks_ != nullptr)
            marks_->takeKinds(entries);
    }
}

void IndexSink::put(Token parent, Entry &entry)
{
    entry.token = paths_.add(parent, entry.name);
    paths_.mutableTree().addFlags(entry.token, PathTree::CANDIDATE);
}

void IndexSink::finish()
{
    Files rest;
    {
        const MutexLock lock(mutex_);
        rest = std::exchange(waiting_, {});
    }
    insert(rest);
}

void IndexSink::listed(Token folder, const FolderStamp &stamp)
{
    if (marks_ != nullptr)
        marks_->listed(folder, stamp);
}

} // namespace quillon
