#include "platform/linux/filemanagers/LocationBarDriver.h"

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
        if (!start({"--no-desktop"}, folder))
            return false;
        const X11Windows &windows = surroundings().windows;
        std::vector<std::uint32_t> first;
        if (windows.isComplete())
            windows.waitUntil(
                0, [&] { return !(first = ownWindows()).empty(); }, deadline);
        // The folder at least is open.
        if (!selectOnceReady(item, deadline))
            return true;
        // The selection comes in a second window.
        if (!first.empty() && windows.waitUntil(
                                  0, [&] { return ownWindows().size() > first.size(); }, deadline))
            windows.close(first.front());
        return true;
    }

private:
    std::vector<std::uint32_t> ownWindows() const
    {
        std::vector<std::uint32_t> ids;
        for (const DesktopWindow &window : surroundings().windows.stacked()) {
            if (window.windowClass == identity().windowClass)
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
