#pragma once

#include <string>
#include <vector>

namespace quillon {

/// The file managers of the desktop: what their front window shows, and how folders are shown in
/// them.
///
/// Paths are absolute and any bytes. Every call returns within about three seconds whatever the
/// file manager does; unless it says otherwise it belongs on a worker thread, one at a time.
class FileManager
{
public:
    FileManager() = default;
    virtual ~FileManager() = default;
    FileManager(const FileManager &) = delete;
    FileManager &operator=(const FileManager &) = delete;

    /// Takes note of the window that is in front, before one of ours is. Main thread; takes a few
    /// milliseconds at most.
    virtual void noteFrontWindow() = 0;
    /// Whether the window noted is one of a file manager. Any thread, at once.
    virtual bool isFrontmost() const = 0;
    /// The items in the folder that the window noted shows, without the hidden ones; those that
    /// are folders end with "/". Empty as well when the folder cannot be found out.
    virtual std::vector<std::string> frontWindowItems() = 0;

    /// The desktop id of the file manager that the calls below use: the one that the user named,
    /// else the default application for folders, else one that is installed. Empty when there is
    /// none. Any thread.
    virtual std::string application() const = 0;
    /// What application() is as long as the user names none. Any thread.
    virtual std::string standardApplication() const = 0;
    /// Whether the application with this desktop id is a file manager, that one or another. Any
    /// thread.
    virtual bool isFileManager(const std::string &desktopId) const = 0;

    // False when nothing could be done, as when the folder is gone.

    virtual bool openNewWindow(const std::string &folder) = 0;
    /// Shows the folder in the front window of the file manager, or in a new one where there is
    /// none or it is minimised, and brings it to the front.
    virtual bool openInFrontWindow(const std::string &folder) = 0;
    /// Shows a folder with one of its items selected.
    virtual bool select(const std::string &item, const std::string &folder) = 0;
    /// Asks the file manager something harmless, so that a desktop that asks the user for consent
    /// does it now.
    virtual bool probe() = 0;
};

} // namespace quillon
