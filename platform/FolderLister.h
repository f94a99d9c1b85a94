#pragma once

#include "platform/FolderStamp.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace quillon {

/// One name in a folder. A symbolic link does not count as a folder, even when it leads to one.
struct FolderEntry
{
    std::string_view name;
    bool isFolder = false;
};

/// The entries of one read, with the memory for their names. Each thread keeps one batch and uses
/// it for folder after folder.
struct FolderBatch
{
    /// Names are valid until the next read into this batch.
    std::vector<FolderEntry> entries;
    /// The implementation's memory for the names.
    std::unique_ptr<std::byte[]> room;
};

/// The kind of what is at a path.
enum class FolderKind
{
    nothing,
    folder,
    /// Anything but a folder, symbolic links included.
    other,
    /// The file system does not answer, or answers with an error other than absence.
    unknown,
};

/// A folder opened for reading.
///
/// It outlives the lister that opened it. Only one thread at a time may call read(). Several may
/// call open(), also while another one reads.
class OpenFolder
{
public:
    OpenFolder() = default;
    virtual ~OpenFolder() = default;
    OpenFolder(const OpenFolder &) = delete;
    OpenFolder &operator=(const OpenFolder &) = delete;

    /// Reads some more entries, without "." and "..", in the file system's order. Returns false,
    /// with an empty batch, at the end and after a failure, which sets error.
    virtual bool read(FolderBatch &batch, std::error_code &error) = 0;
    /// Opens a folder in this one by its name. Returns null with error set when the name is gone,
    /// is not a folder, is a link or may not be read. Returns null without an error when
    /// FolderLister::open() would.
    virtual std::unique_ptr<OpenFolder> open(const std::string &name,
                                             std::error_code &error) const = 0;
    /// Returns the kind of what is at a name in this folder, without following a symbolic link.
    virtual FolderKind kind(const std::string &name) const = 0;
    /// Returns the folder's present stamp, which is unknown when the file system gives none.
    virtual FolderStamp stamp() const = 0;
    /// Returns the present stamp of a folder in this one without opening it. Unknown where nothing
    /// of this name is a folder, where the file system gives none, and where another file system
    /// may be mounted. Called as open().
    virtual FolderStamp childStamp(const std::string &name) const = 0;
};

/// Opens folders of the file system. Safe from several threads.
class FolderLister
{
public:
    enum class Wanted
    {
        everything,
        /// Only folders count, so a folder that is known to hold none need not be opened.
        subfolders,
    };

    FolderLister() = default;
    virtual ~FolderLister() = default;
    FolderLister(const FolderLister &) = delete;
    FolderLister &operator=(const FolderLister &) = delete;

    /// Opens a folder by its absolute path of any length and follows symbolic links. Returns null
    /// with error set as in OpenFolder::open(). Returns null without an error for a folder of a
    /// file system that holds no files (proc, sysfs and similar ones). What is wanted applies to
    /// every folder opened from this one.
    virtual std::unique_ptr<OpenFolder> open(const std::string &path, Wanted wanted,
                                             std::error_code &error) = 0;

    using Kind = FolderKind;
    /// Returns the kind of what is at an absolute path of any length. Follows symbolic links,
    /// except at the end of the path.
    virtual Kind kind(const std::string &path) = 0;
};

} // namespace quillon
