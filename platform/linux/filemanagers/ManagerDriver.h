#pragma once

#include "base/BoundedCalls.h"
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

/// What a driver works with.
struct Surroundings
{
    BusConnection &session;
    Accessibility &accessibility;
    const X11Windows &windows;
    /// For questions to file systems, which may be gone.
    BoundedCalls &disk;
};

/// How one file manager is asked to do things. The base class asks it in the ways that hold for
/// all, and thereby serves those that are not known better. One call at a time for actions;
/// folderOf() may run beside them.
class ManagerDriver
{
public:
    /// Texts are empty where a file manager has no such thing or it is not known.
    struct Identity
    {
        /// Without ".desktop".
        std::vector<std::string> desktopIds;
        /// The class of its windows, as in DesktopWindow.
        std::string windowClass;
        /// The name on the session bus that is its own.
        std::string busName;
        /// The command for a window of its own: the program and its options; the folder follows.
        std::vector<std::string> newWindowCommand;
        /// Whether the command takes a folder as its path and not as its URI.
        bool takesPath = false;
        /// What follows the folder's name in the titles of its windows.
        std::string titleEnd = {};
    };

    ManagerDriver(Identity identity, Surroundings surroundings);
    virtual ~ManagerDriver() = default;
    ManagerDriver(const ManagerDriver &) = delete;
    ManagerDriver &operator=(const ManagerDriver &) = delete;

    const Identity &identity() const { return identity_; }

    // False when nothing was done. The application is the one whose windows are meant.

    bool openNewWindow(GDesktopAppInfo *application, const std::string &folder, Deadline deadline);
    /// Shows the item selected in its folder.
    bool select(GDesktopAppInfo *application, const std::string &item, const std::string &folder,
                Deadline deadline);
    /// Has the first of the windows that can be asked show the folder, and makes sure that it does.
    /// Returns that window; absent when none shows it.
    std::optional<std::uint32_t> retarget(const std::vector<DesktopWindow> &windows,
                                          const std::string &folder, Deadline deadline);
    /// The folder that a window shows.
    std::optional<std::string> folderOf(const DesktopWindow &window, Deadline deadline);
    /// Asks the file manager something that changes nothing. False when it does not run.
    bool isAnswering(Deadline deadline);

protected:
    /// Has the window show the folder; false when it cannot be asked, as one of another program
    /// that calls itself by the same class, or one that shows no folder.
    virtual bool show(const DesktopWindow &window, const std::string &folder, Deadline deadline);
    /// Selects an item in a way of the file manager's own, where the usual one was of no use.
    virtual bool selectByOwnMeans(const std::string &item, const std::string &folder,
                                  Deadline deadline);
    /// What the file manager tells about a window; absent when it tells nothing.
    virtual std::optional<std::string> toldFolder(const DesktopWindow &window, Deadline deadline);
    /// Whether the file manager tells that a window shows the folder.
    virtual bool isTold(const DesktopWindow &window, const std::string &folder, Deadline deadline);
    /// The folder of a window that neither tells it nor has its name as the title.
    virtual std::optional<std::string> untitledFolder(const DesktopWindow &window,
                                                      Deadline deadline);
    /// The name on the bus under which the file manager itself offers the interface that all have.
    virtual std::optional<std::string> commonName(Deadline deadline);

    /// ShowItems or ShowFolders of the interface that all have, with one URI.
    bool callCommon(const std::string &service, const std::string &method, const std::string &path,
                    Deadline deadline, BusConnection::Activation activation);
    /// Waits until the file manager answers on the bus and has it select the item.
    bool selectOnceReady(const std::string &item, Deadline deadline);
    /// Starts the program with options that have it wait for work, then does what selectOnceReady()
    /// does.
    bool selectOnceStarted(const std::vector<std::string> &options, const std::string &item,
                           Deadline deadline);
    /// Starts the file manager's program with these options and the item or folder.
    bool start(const std::vector<std::string> &options, const std::string &path);

    /// What the title says about the folder: its name, as a rule.
    std::string nameIn(const DesktopWindow &window) const;
    const Surroundings &surroundings() const { return surroundings_; }
    static BusObject commonObject(const std::string &service);

private:
    bool start(const std::string &program, const std::vector<std::string> &options,
               const std::string &path);
    /// Whether the application is who answers to the name that all file managers share.
    bool ownsCommonName(GDesktopAppInfo *application, Deadline deadline);
    /// Waits until the window, as it was before it was asked, shows the folder.
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
