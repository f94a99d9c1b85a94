#pragma once

#include <string>
#include <vector>

namespace quillon {

/// Knows the desktop's default applications and themed icons. Safe from every thread. No call waits
/// for the program that it starts.
class Workspace
{
public:
    Workspace() = default;
    virtual ~Workspace() = default;
    Workspace(const Workspace &) = delete;
    Workspace &operator=(const Workspace &) = delete;

    /// Opens the file or folder with its default application. Returns false when there is none or
    /// the item is gone.
    virtual bool open(const std::string &path) = 0;
    /// Opens the address, such as "https://example.org", with the application for its kind. Returns
    /// false when there is none.
    virtual bool openLink(const std::string &address) = 0;
    /// Returns the desktop id of the default application for the file or folder. The id is empty
    /// when there is none or the item is gone.
    virtual std::string applicationToOpen(const std::string &path) const = 0;
    /// Returns names in the icon theme for the item, the most fitting first. The list is empty when
    /// the item is gone.
    virtual std::vector<std::string> iconNames(const std::string &path) const = 0;
    /// Returns whether a folder is at the path. Follows symbolic links.
    virtual bool isFolder(const std::string &path) const = 0;
    /// Returns the path with every symbolic link resolved, or the path itself where that fails.
    virtual std::string resolvingSymlinks(const std::string &path) const = 0;
};

} // namespace quillon
