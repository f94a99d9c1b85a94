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

/// The file managers of this desktop: nautilus, nemo, caja, thunar, dolphin and pcmanfm-qt as each
/// wants to be asked, any other one in the ways that all have in common.
///
/// The calls that open something are for one thread at a time; reading the front window may go on
/// beside them.
class DesktopFileManager : public FileManager
{
public:
    /// Tells the desktop id of the file manager that the user wants, if any. Any thread.
    using Choice = std::function<std::optional<std::string>()>;

    explicit DesktopFileManager(Choice choice);

    void noteFrontWindow() override;
    bool isFrontmost() const override;
    std::vector<std::string> frontWindowItems() override;

    std::string application() const override;
    std::string standardApplication() const override;
    bool isFileManager(const std::string &desktopId) const override;
    bool openNewWindow(const std::string &folder) override;
    bool openInFrontWindow(const std::string &folder) override;
    bool select(const std::string &item, const std::string &folder) override;
    bool probe() override;

    /// The folder that the window noted shows, if it can be found out.
    std::optional<std::string> frontWindowFolder();

private:
    /// A file manager to be asked.
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
    /// The windows of the file manager's class that are not minimised, the topmost first.
    std::vector<DesktopWindow> shownWindows(const ManagerDriver &driver) const;
    bool openNewWindow(const Chosen &chosen, const std::string &folder, Deadline deadline);
    /// Gives a window the keyboard, unless the user wants something of us again.
    void putInFront(std::uint32_t window, Deadline deadline) const;
    /// Runs what brings up a window and puts that window in front.
    bool bringUp(const ManagerDriver &driver, const std::function<bool()> &open, Deadline deadline);

    const Choice choice_;
    BusConnection session_;
    Accessibility accessibility_;
    const X11Windows windows_;
    BoundedCalls disk_;
    /// For the main thread, which must not wait for another one's answers.
    const X11Windows frontWindows_;
    std::vector<std::unique_ptr<ManagerDriver>> drivers_;
    /// For every file manager that is not known better.
    std::unique_ptr<ManagerDriver> generic_;

    mutable Mutex mutex_;
    std::optional<DesktopWindow> frontWindow_ GUARDED_BY(mutex_);
};

} // namespace quillon
