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
        return start({"--no-desktop", "--no-default-window"}, folder) &&
               selectOnceStarted(item, deadline);
    }
};

} // namespace

std::unique_ptr<ManagerDriver> makeCajaDriver(Surroundings surroundings)
{
    return std::make_unique<CajaDriver>(surroundings);
}

} // namespace quillon
