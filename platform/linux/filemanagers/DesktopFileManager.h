#pragma once

#include "base/Mutex.h"
#include "platform/FileManager.h"
#include "platform/FolderLister.h"
#include "platform/linux/bus/BusConnection.h"
#include "platform/linux/filemanagers/Accessibility.h"
#include "platform/linux/filemanagers/ManagerDriver.h"
#include "platform/linux/windows/X11Windows.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// Drives the file manager of this desktop. nautilus, nemo, caja, thunar, dolphin and pcmanfm-qt
/// have a driver each; any other one is driven by what all file managers have in common.
///
/// Only one thread at a time may call what opens something. The front window may be read from
/// another thread meanwhile.
class DesktopFileManager : public FileManager
{
public:
    /// Returns the desktop id of the file manager that the user has chosen, if any. It is called
    /// from any thread.
    using Choice = std::function<std::optional<std::string>()>;

    /// The token goes to the file manager whenever it is asked to show something. It outlives this
    /// object.
    DesktopFileManager(Choice choice, const LaunchToken &token);

    void noteFrontWindow() override;
    bool isFrontmost() const override;
    std::vector<std::string> frontWindowItems() override;

    std::string application() const override;
    std::string standardApplication() const override;
    bool isFileManager(const std::string &desktopId) const override;
    bool openNewWindow(const std::string &folder) override;
    bool openInFrontWindow(const std::string &folder) override;
    bool select(const std::string &item, const std::string &folder) override;
    bool showProperties(const std::string &item) override;
    bool probe() override;

    /// Returns the folder that the noted window shows, or nothing when no way to find it has
    /// worked.
    std::optional<std::string> frontWindowFolder();

private:
    /// The file manager that is asked.
    struct Chosen
    {
        ObjectRef<GDesktopAppInfo> application;
        ManagerDriver &driver;
    };

    FolderLister::Kind kind(const std::string &path, Deadline deadline);
    std::optional<std::string> frontWindowFolder(Deadline deadline);

    std::optional<DesktopWindow> frontWindow() const;
    Chosen chosen();
    ManagerDriver &driverFor(const std::string &desktopId);
    ManagerDriver *driverOf(const DesktopWindow &window) const;
    /// Returns the windows of the file manager's class that are not minimised, the topmost first.
    std::vector<DesktopWindow> shownWindows(const ManagerDriver &driver) const;
    bool openNewWindow(const Chosen &chosen, const std::string &folder, Deadline deadline);
    /// Gives a window the keyboard, unless the user has brought up one of our windows again.
    void putInFront(std::uint32_t window, Deadline deadline) const;
    /// Calls open(), which brings up a window, and puts that window in front.
    bool bringUp(const ManagerDriver &driver, const std::function<bool()> &open, Deadline deadline);

    const Choice choice_;
    BusConnection session_;
    Accessibility accessibility_;
    const X11Windows windows_;
    BoundedCalls disk_;
    /// Only the main thread uses this connection, so that it never waits for another thread's
    /// answers.
    const X11Windows frontWindows_;
    std::vector<std::unique_ptr<ManagerDriver>> drivers_;
    /// Drives every file manager without a driver of its own.
    std::unique_ptr<ManagerDriver> generic_;

    mutable Mutex mutex_;
    std::optional<DesktopWindow> frontWindow_ GUARDED_BY(mutex_);
};

} // namespace quillon
