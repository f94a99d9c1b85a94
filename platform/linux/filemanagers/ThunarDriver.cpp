#include "platform/linux/filemanagers/LocationBarDriver.h"

namespace quillon {

namespace {

/// Drives thunar, Xfce's file manager.
class ThunarDriver : public LocationBarDriver
{
public:
    explicit ThunarDriver(Surroundings surroundings)
        : LocationBarDriver({.desktopIds = {"thunar", "Thunar", "thunar-folder-handler"},
                             .windowClass = "thunar",
                             .busName = "org.xfce.Thunar",
                             .newWindowCommand = {"thunar"},
                             .takesPath = true,
                             .titleEnd = " - Thunar"},
                            surroundings)
    {}

protected:
    /// Thunar shows an error dialogue for a URI whose path is not valid text.
    std::string typedLocation(const std::string &folder) override
    {
        const std::string location = LocationBarDriver::typedLocation(folder);
        return location == folder ? location : std::string();
    }

    /// Thunar's menus are empty until they are opened, so only the key remains.
    bool showEntry(LocationBar &bar, const DesktopWindow &window, Deadline deadline) override
    {
        const X11Windows &windows = surroundings().windows;
        return windows.activate(window.id, deadline.atMost(ACTIVATION_LIMIT)) &&
               windows.press(window.id, {.symbol = 'l', .withControl = true}) &&
               windows.waitUntil(
                   window.id, [&] { return bar.hasEntry(); }, deadline);
    }

    bool selectByOwnMeans(const std::string &item, const std::string &, Deadline deadline) override
    {
        return selectOnceStarted({"--daemon"}, item, deadline);
    }
};

} // namespace

std::unique_ptr<ManagerDriver> makeThunarDriver(Surroundings surroundings)
{
    return std::make_unique<ThunarDriver>(surroundings);
}

} // namespace quillon
