#pragma once

#include <string>
#include <vector>

namespace quillon {

/// Asks the file managers of the desktop what their front window shows, and has them show folders.
///
/// Paths are absolute and consist of any bytes. Every call returns within about three seconds,
/// whatever the file manager does. Unless noted otherwise, calls are made on a worker thread, one
/// at a time.
class FileManager
{
public:
    FileManager() = default;
    virtual ~FileManager() = default;
    FileManager(const FileManager &) = delete;
    FileManager &operator=(const FileManager &) = delete;

    /// Notes the window that is in front, before one of ours comes to the front. Main thread; takes
    /// a few milliseconds at most.
    virtual void noteFrontWindow() = 0;
    /// Returns whether the noted window belongs to a file manager. Any thread; answers at once.
    virtual bool isFrontmost() const = 0;
    /// Returns the items in the folder that the noted window shows, without hidden ones. The paths
    /// of folders end with "/". The list is also empty when the folder cannot be determined.
    virtual std::vector<std::string> frontWindowItems() = 0;

    /// Returns the desktop id of the file manager that the calls below use: the one that the user
    /// has named, else the default application for folders, else one that is installed. The id is
    /// empty when there is none. Any thread.
    virtual std::string application() const = 0;
    /// Returns what application() returns while the user names none. Any thread.
    virtual std::string standardApplication() const = 0;
    /// Returns whether the application with this desktop id is a file manager. Any thread.
    virtual bool isFileManager(const std::string &desktopId) const = 0;

    // Each of these returns false when it could do nothing, for example because the folder is gone.

    virtual bool openNewWindow(const std::string &folder) = 0;
    /// Shows the folder in the file manager's front window, or in a new window where there is none
    /// or it is minimised, and brings that window to the front.
    virtual bool openInFrontWindow(const std::string &folder) = 0;
    /// Shows a folder with one of its items selected.
    virtual bool select(const std::string &item, const std::string &folder) = 0;
    /// Shows the file manager's own window about an item: its size, its owner, who may read it.
    virtual bool showProperties(const std::string &item) = 0;
    /// Asks the file manager something harmless, so that a desktop that asks the user for consent
    /// does it now.
    virtual bool probe() = 0;
};

} // namespace quillon
