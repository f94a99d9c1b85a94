#pragma once

#include "base/BoundedCalls.h"
#include "platform/linux/bus/ActivationToken.h"
#include "platform/linux/bus/BusConnection.h"
#include "platform/linux/filemanagers/Accessibility.h"
#include "platform/linux/windows/X11Windows.h"

#include <gio/gdesktopappinfo.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// The services that a driver works with.
struct Surroundings
{
    BusConnection &session;
    Accessibility &accessibility;
    const X11Windows &windows;
    /// Bounds questions to file systems, whose servers may be gone.
    BoundedCalls &disk;
    /// Whatever is started or asked to show a window gets this right to the keyboard.
    const LaunchToken &token;
};

/// Drives one file manager. The base class does so by what all file managers have in common, and
/// thereby serves those without a class of their own. Actions are called one at a time; folderOf()
/// may run beside them.
class ManagerDriver
{
public:
    /// An empty text stands for something that a file manager lacks or that is unknown.
    struct Identity
    {
        /// The file manager's desktop ids, without ".desktop".
        std::vector<std::string> desktopIds;
        /// The class of its windows, as in DesktopWindow.
        std::string windowClass;
        /// Its own name on the session bus.
        std::string busName;
        /// The command that opens a window of its own: the program and its options. The folder
        /// follows them.
        std::vector<std::string> newWindowCommand;
        /// True when the command takes a folder as its path and not as its URI.
        bool takesPath = false;
        /// The text that follows the folder's name in the titles of its windows.
        std::string titleEnd = {};
    };

    ManagerDriver(Identity identity, Surroundings surroundings);
    virtual ~ManagerDriver() = default;
    ManagerDriver(const ManagerDriver &) = delete;
    ManagerDriver &operator=(const ManagerDriver &) = delete;

    const Identity &identity() const { return identity_; }

    // The application is the one whose windows are meant. The operations return false when nothing
    // was done.

    bool openNewWindow(GDesktopAppInfo *application, const std::string &folder, Deadline deadline);
    /// Shows the item selected in its folder.
    bool select(GDesktopAppInfo *application, const std::string &item, const std::string &folder,
                Deadline deadline);
    /// Shows the window about the item.
    bool showProperties(const std::string &item, Deadline deadline);
    /// Makes the first window that accepts it show the folder, and waits until it does. Returns
    /// that window, or nothing when none comes to show the folder.
    std::optional<std::uint32_t> retarget(const std::vector<DesktopWindow> &windows,
                                          const std::string &folder, Deadline deadline);
    /// Returns the folder that a window shows.
    std::optional<std::string> folderOf(const DesktopWindow &window, Deadline deadline);
    /// Returns whether the file manager runs and answers a question that changes nothing.
    bool isAnswering(Deadline deadline);

protected:
    /// Asks the window to show the folder. Returns false when the window takes no such request,
    /// because it shows no folder or belongs to another program of the same class.
    virtual bool show(const DesktopWindow &window, const std::string &folder, Deadline deadline);
    /// Selects an item in the file manager's own way, after the usual way has failed.
    virtual bool selectByOwnMeans(const std::string &item, const std::string &folder,
                                  Deadline deadline);
    /// Returns the folder that the file manager reports for a window, or nothing when it reports
    /// none.
    virtual std::optional<std::string> toldFolder(const DesktopWindow &window, Deadline deadline);
    /// Returns whether the file manager reports that a window shows the folder.
    virtual bool isTold(const DesktopWindow &window, const std::string &folder, Deadline deadline);
    /// Returns the folder of a window for which the file manager reports none and whose title is
    /// not the folder's name.
    virtual std::optional<std::string> untitledFolder(const DesktopWindow &window,
                                                      Deadline deadline);
    /// Returns the bus name under which this very file manager offers the interface that all have
    /// in common, or nothing when it offers none.
    virtual std::optional<std::string> commonName(Deadline deadline);

    /// Calls ShowItems, ShowFolders or ShowItemProperties of the common interface with one URI.
    bool callCommon(const std::string &service, const std::string &method, const std::string &path,
                    Deadline deadline, BusConnection::Activation activation);
    /// Waits until the file manager answers on the bus, then asks it to select the item.
    bool selectOnceReady(const std::string &item, Deadline deadline);
    /// Starts the program with options that have it wait for work, then does what selectOnceReady()
    /// does.
    bool selectOnceStarted(const std::vector<std::string> &options, const std::string &item,
                           Deadline deadline);
    /// Starts the file manager's program with these options and the item or folder.
    bool start(const std::vector<std::string> &options, const std::string &path);

    /// Returns the folder's part of the window's title, which is usually the folder's name.
    std::string nameIn(const DesktopWindow &window) const;
    const Surroundings &surroundings() const { return surroundings_; }
    static BusObject commonObject(const std::string &service);

private:
    bool start(const std::string &program, const std::vector<std::string> &options,
               const std::string &path);
    /// Returns whether the application owns the bus name that all file managers share.
    bool ownsCommonName(GDesktopAppInfo *application, Deadline deadline);
    /// Waits until the window shows the folder; `before` describes it before it was asked.
    bool comesToShow(const DesktopWindow &before, const std::string &folder, Deadline deadline);

    const Identity identity_;
    Surroundings surroundings_;
};

std::unique_ptr<ManagerDriver> makeNautilusDriver(Surroundings surroundings);
std::unique_ptr<ManagerDriver> makeNemoDriver(Surroundings surroundings);
std::unique_ptr<ManagerDriver> makeCajaDriver(Surroundings surroundings);
std::unique_ptr<ManagerDriver> makeThunarDriver(Surroundings surroundings);
std::unique_ptr<ManagerDriver> makeDolphinDriver(Surroundings surroundings);
std::unique_ptr<ManagerDriver> makePcmanfmQtDriver(Surroundings surroundings);

} // namespace quillon
