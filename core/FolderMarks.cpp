#include "core/FolderMarks.h"

#include <algorithm>
#include <array>
#include <utility>

#include <xxhash.h>

namespace quillon {

namespace {

/// Two changes within one tick of the kernel's clock give a folder the same change time. So the
/// stamp of a folder that changed less than this many nanoseconds before the crawl proves nothing.
constexpr std::int64_t YOUNG = 2'000'000'000;

} // namespace

FolderMarks::Mark FolderMarks::of(const FolderStamp &stamp)
{
    if (!stamp.isKnown() || !stamp.isLasting)
        return UNKNOWN;
    const std::array numbers{stamp.device, stamp.inode, static_cast<std::uint64_t>(stamp.changed)};
    return std::max(XXH3_64bits(numbers.data(), sizeof(numbers)), FOLDER + 1);
}

void FolderMarks::set(PathTree::NodeId node, Mark mark)
{
    if (node >= marks_.size())
        marks_.resize(std::max<std::size_t>(node + std::size_t{1}, marks_.size() * 2));
    marks_[node] = mark;
}

CrawlMarks::CrawlMarks(std::int64_t now, ExtensionSet files, FolderMarks known)
    : began_(now), files_(std::move(files)), known_(std::move(known))
{}

bool CrawlMarks::isUnchanged(PathTree::NodeId folder, const FolderStamp &stamp) const
{
    const FolderMarks::Mark mark = FolderMarks::of(stamp);
    return mark != FolderMarks::UNKNOWN && known_.at(folder) == mark;
}

std::optional<bool> CrawlMarks::isFolder(PathTree::NodeId node, std::string_view name) const
{
    const FolderMarks::Mark mark = known_.at(node);
    if (mark == FolderMarks::UNKNOWN && files_.holdsExtensionOf(name))
        return std::nullopt;
    return mark != FolderMarks::NO_FOLDER;
}

void CrawlMarks::listed(PathTree::NodeId folder, const FolderStamp &stamp)
{
    const FolderMarks::Mark mark = FolderMarks::of(stamp);
    if (mark == FolderMarks::UNKNOWN || began_ - stamp.changed <= YOUNG)
        return;
    const MutexLock lock(mutex_);
    taken_.set(folder, mark);
}

void CrawlMarks::takeKinds(std::span<const CrawlSink::Entry> entries)
{
    const auto isTelling = [this](const CrawlSink::Entry &entry) {
        return files_.holdsExtensionOf(entry.name);
    };
    auto entry = std::ranges::find_if(entries, isTelling);
    if (entry == entries.end())
        return;
    const MutexLock lock(mutex_);
    for (; entry != entries.end(); entry = std::find_if(entry + 1, entries.end(), isTelling))
        taken_.set(entry->token, entry->isFolder ? FolderMarks::FOLDER : FolderMarks::NO_FOLDER);
}

FolderMarks CrawlMarks::take()
{
    const MutexLock lock(mutex_);
    return std::exchange(taken_, {});
}

} // namespace quillon
