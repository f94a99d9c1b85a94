#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillon {

/// What tells one folder of a file system from every other, through changes of its name.
struct FolderId
{
    std::uint64_t inode = 0;
    /// When the folder was made, in nanoseconds since 1970. Inode numbers are used again; this
    /// tells the folders that had one apart.
    std::int64_t birthTime = 0;

    friend bool operator==(const FolderId &, const FolderId &) = default;
};

/// What is known of a folder at a path.
enum class FolderPresence
{
    /// A folder is there whose names may be listed and whose contents may be entered.
    there,
    /// A folder is there and may not be listed or entered.
    unreadable,
    /// No folder is there, or nothing that can be reached.
    away,
    /// The file system does not answer.
    unanswered,
};

/// Facts about single folders. Safe from every thread. A symbolic link to a folder counts as a
/// folder whose identity is the link's own.
class FolderIdentity
{
public:
    FolderIdentity() = default;
    virtual ~FolderIdentity() = default;
    FolderIdentity(const FolderIdentity &) = delete;
    FolderIdentity &operator=(const FolderIdentity &) = delete;

    /// Looks at what stands at the absolute path.
    virtual FolderPresence presence(const std::string &path) const = 0;
    /// Absent when no folder stands there, or its file system keeps no birth times.
    virtual std::optional<FolderId> identify(const std::string &path) const = 0;
    /// The absolute path of the folder directly below the parent that has this identity; absent
    /// when there is none or the parent cannot be read.
    virtual std::optional<std::string> find(const std::string &parent,
                                            const FolderId &id) const = 0;
};

} // namespace quillon
