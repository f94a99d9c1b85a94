#include "platform/linux/filemanagers/LocationBarDriver.h"

namespace quillon {

namespace {

/// Xfce's.
class ThunarDriver : public LocationBarDriver
{
public:
    explicit ThunarDriver(Surroundings surroundings)
        : LocationBarDriver({.desktopIds = {"thunar", "Thunar", "thunar-folder-handler"},
                             .windowClass = "thunar",
                             .busName = "org.xfce.Thunar",
                             .newWindowCommand = {"thunar"}},
                            surroundings)
    {}

protected:
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
