#pragma once

#include "platform/FolderStamp.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace quillon {

/// One name in a folder. Symbolic links, also those to folders, are no folders.
struct FolderEntry
{
    std::string_view name;
    bool isFolder = false;
};

/// Entries read at once and the room that holds their names; kept from folder to folder, one for
/// each thread.
struct FolderBatch
{
    /// Names are valid until the next read into this batch.
    std::vector<FolderEntry> entries;
    /// For the implementation.
    std::unique_ptr<std::byte[]> room;
};

/// What stands at a path.
enum class FolderKind
{
    nothing,
    folder,
    /// Whatever is no folder, symbolic links included.
    other,
    /// The file system does not answer, or answers with an error other than absence.
    unknown,
};

/// A folder opened for reading.
///
/// Outlives the lister that opened it. read() is for one thread at a time; open() may be called
/// from several, also while another reads.
class OpenFolder
{
public:
    OpenFolder() = default;
    virtual ~OpenFolder() = default;
    OpenFolder(const OpenFolder &) = delete;
    OpenFolder &operator=(const OpenFolder &) = delete;

    /// Reads some more entries, "." and ".." left out, in the file system's order. False at the end
    /// and on an error, which error then holds; the batch is empty then.
    virtual bool read(FolderBatch &batch, std::error_code &error) = 0;
    /// Opens a folder in this one by its name. Null with error set when it is gone, is no folder
    /// (any more), is a link or may not be read; null without an error when there is nothing to
    /// read by the rules of FolderLister::open().
    virtual std::unique_ptr<OpenFolder> open(const std::string &name,
                                             std::error_code &error) const = 0;
    /// What stands at a name in this folder; a symbolic link is not followed.
    virtual FolderKind kind(const std::string &name) const = 0;
    /// The folder as it is now; unknown where the file system does not tell.
    virtual FolderStamp stamp() const = 0;
};

/// Opens folders of the file system. Safe from several threads.
class FolderLister
{
public:
    enum class Wanted
    {
        everything,
        /// Folders are all that counts: one that is known to hold none need not be opened.
        subfolders,
    };

    FolderLister() = default;
    virtual ~FolderLister() = default;
    FolderLister(const FolderLister &) = delete;
    FolderLister &operator=(const FolderLister &) = delete;

    /// Opens a folder by its absolute path of any length, symbolic links in it and at its end
    /// being followed. Null with error set as for OpenFolder::open(); null without an error for a
    /// folder of a file system that holds no files (proc, sysfs and their kind). What is wanted
    /// holds for everything opened from there.
    virtual std::unique_ptr<OpenFolder> open(const std::string &path, Wanted wanted,
                                             std::error_code &error) = 0;

    using Kind = FolderKind;
    /// What stands at an absolute path of any length; a symbolic link at its end is not followed,
    /// those before are.
    virtual Kind kind(const std::string &path) = 0;
};

} // namespace quillon
