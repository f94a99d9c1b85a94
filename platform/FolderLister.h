#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <system_error>

namespace quillon {

/// One name in a folder. Symbolic links, also those to folders, are no folders.
struct FolderEntry
{
    /// Valid until the next call on the same folder.
    std::string_view name;
    bool isFolder = false;
};

/// A folder opened for reading. Used by one thread at a time.
class OpenFolder
{
public:
    OpenFolder() = default;
    virtual ~OpenFolder() = default;
    OpenFolder(const OpenFolder &) = delete;
    OpenFolder &operator=(const OpenFolder &) = delete;

    /// Reads the next entry, "." and ".." left out, in the file system's order. False at the end
    /// and on an error; error then tells which.
    virtual bool next(FolderEntry &entry, std::error_code &error) = 0;
    /// Opens a folder in this one by its name; null with error set when it is gone, is no folder
    /// (any more), is a link or may not be read.
    virtual std::unique_ptr<OpenFolder> open(const std::string &name, std::error_code &error) = 0;
};

/// Opens folders of the file system. Safe from several threads.
class FolderLister
{
public:
    FolderLister() = default;
    virtual ~FolderLister() = default;
    FolderLister(const FolderLister &) = delete;
    FolderLister &operator=(const FolderLister &) = delete;

    /// Opens a folder by its absolute path, a symbolic link at its end being followed; null with
    /// error set as for OpenFolder::open().
    virtual std::unique_ptr<OpenFolder> open(const std::string &path, std::error_code &error) = 0;
};

} // namespace quillon
