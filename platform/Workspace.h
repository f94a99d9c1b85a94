#pragma once

#include <string>
#include <vector>

namespace quillon {

/// What the desktop does with files: default applications and themed icons. Safe from every
/// thread; no call waits for the program it starts.
class Workspace
{
public:
    Workspace() = default;
    virtual ~Workspace() = default;
    Workspace(const Workspace &) = delete;
    Workspace &operator=(const Workspace &) = delete;

    /// Opens the file or folder with its default application. False when there is none or the
    /// item is gone.
    virtual bool open(const std::string &path) = 0;
    /// Opens the address, as in "https://example.org", with the application for its kind. False
    /// when there is none.
    virtual bool openLink(const std::string &address) = 0;
    /// The desktop id of the default application for the file or folder; empty when there is none
    /// or the item is gone.
    virtual std::string applicationToOpen(const std::string &path) const = 0;
    /// Names in the icon theme for the item, the most fitting first; empty when it is gone.
    virtual std::vector<std::string> iconNames(const std::string &path) const = 0;
    /// Symbolic links are followed.
    virtual bool isFolder(const std::string &path) const = 0;
    /// The path with every symbolic link resolved; the path itself where that fails.
    virtual std::string resolvingSymlinks(const std::string &path) const = 0;
};

} // namespace quillon
