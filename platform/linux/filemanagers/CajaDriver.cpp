#include "platform/linux/filemanagers/LocationBarDriver.h"

#include <algorithm>

namespace quillon {

namespace {

/// MATE's. The bus cannot start it, and its option to select asks whichever file manager owns the
/// shared name; so it is started without a window and asked by its own name.
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
        // The folder at least is open.
        if (!selectOnceReady(item, deadline))
            return true;
        // The selection comes in a second window.
        if (started.size() == 1 &&
            windows.waitUntil(
                0, [&] { return windowsSince(before).size() > 1; }, deadline))
            windows.close(started.front());
        return true;
    }

private:
    /// The windows of its class that were not there before; those may be the user's.
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
