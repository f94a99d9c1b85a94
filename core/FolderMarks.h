#pragma once

#include "base/Mutex.h"
#include "indexing/CrawlSink.h"
#include "indexing/NameKinds.h"
#include "matching/PathTree.h"
#include "platform/FolderStamp.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quillon {

/// Holds for each node of the index a mark, by which a folder that has not changed since it was
/// listed is known again. A mark belongs to the id of its node, so the ids must not change.
class FolderMarks
{
public:
    /// A number made of a folder's stamp, or one of these three.
    using Mark = std::uint64_t;
    static constexpr Mark UNKNOWN = 0;
    static constexpr Mark NO_FOLDER = 1;
    /// It is a folder, and nothing else is known of it.
    static constexpr Mark FOLDER = 2;

    /// Returns UNKNOWN for a stamp that may stay the same when the folder changes.
    static Mark of(const FolderStamp &stamp);

    Mark at(PathTree::NodeId node) const { return node < marks_.size() ? marks_[node] : UNKNOWN; }
    void set(PathTree::NodeId node, Mark mark);

private:
    std::vector<Mark> marks_;
};

/// Holds the marks that a crawl goes by, and collects those that it leaves for the next one. It may
/// be called from all threads of the crawl.
class CrawlMarks
{
public:
    /// The crawl begins now, in nanoseconds since 1970. Files with these extensions are indexed.
    CrawlMarks(std::int64_t now, ExtensionSet files, FolderMarks known);

    /// Returns whether isUnchanged() may return true for the folder.
    bool remembers(PathTree::NodeId folder) const
    {
        return known_.at(folder) > FolderMarks::FOLDER;
    }
    /// Returns whether the folder holds what the index says.
    bool isUnchanged(PathTree::NodeId folder, const FolderStamp &stamp) const;
    /// Returns whether a node in an unchanged folder is a folder; absent where nobody knows.
    std::optional<bool> isFolder(PathTree::NodeId node, std::string_view name) const;

    /// Takes note of a folder whose content is in the index as of this stamp or later.
    void listed(PathTree::NodeId folder, const FolderStamp &stamp) EXCLUDES(mutex_);
    /// Takes note of which entries of a folder are folders, where their names do not say so.
    void takeKinds(std::span<const CrawlSink::Entry> entries) EXCLUDES(mutex_);
    /// Hands over what the crawl has left.
    FolderMarks take() EXCLUDES(mutex_);

private:
    const std::int64_t began_;
    const ExtensionSet files_;
    const FolderMarks known_;
    Mutex mutex_;
    FolderMarks taken_ GUARDED_BY(mutex_);
};

} // namespace quillon
