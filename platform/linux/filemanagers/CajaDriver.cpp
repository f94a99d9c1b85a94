#include "platform/linux/filemanagers/LocationBarDriver.h"

#include <algorithm>

namespace quillon {

namespace {

/// Drives caja, MATE's file manager. The bus cannot start it, and its option to select asks
/// whichever file manager owns the shared name. So it is started without a window and then called
/// by its own name.
class CajaDriver : public LocationBarDriver
{
public:
    explicit CajaDriver(Surroundings surroundings)
        : LocationBarDriver({.desktopIds = {"caja-folder-handler", "caja-browser", "caja"},
                             .windowClass = "caja",
                             .busName = "org.mate.Caja",
                             .newWindowCommand = {"caja", "--no-desktop"}},
                            surroundings)
    {}

protected:
    bool selectByOwnMeans(const std::string &item, const std::string &folder,
                          Deadline deadline) override
    {
        const X11Windows &windows = surroundings().windows;
        const auto before = windows.clients();
        if (!start({"--no-desktop"}, folder))
            return false;
        std::vector<std::uint32_t> started;
        if (windows.isComplete())
            windows.waitUntil(
                0, [&] { return !(started = windowsSince(before)).empty(); }, deadline);
        // The folder is open even where the item cannot be selected.
        if (!selectOnceReady(item, deadline))
            return true;
        // The selection brings up a second window.
        if (started.size() == 1 &&
            windows.waitUntil(
                0, [&] { return windowsSince(before).size() > 1; }, deadline))
            windows.close(started.front());
        return true;
    }

private:
    /// Returns the windows of its class that have come since. Windows that were there before may be
    /// the user's.
    std::vector<std::uint32_t> windowsSince(const std::vector<std::uint32_t> &before) const
    {
        std::vector<std::uint32_t> ids;
        for (const DesktopWindow &window : surroundings().windows.stacked()) {
            if (window.windowClass == identity().windowClass &&
                std::ranges::find(before, window.id) == before.end())
                ids.push_back(window.id);
        }
        return ids;
    }
};

} // namespace

std::unique_ptr<ManagerDriver> makeCajaDriver(Surroundings surroundings)
{
    return std::make_unique<CajaDriver>(surroundings);
}

} // namespace quillon
