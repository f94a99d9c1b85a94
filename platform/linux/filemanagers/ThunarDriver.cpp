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
                             .newWindowCommand = {"thunar"},
                             .takesPath = true},
                            surroundings)
    {}

protected:
    /// A URI of what is no text is answered with a dialogue.
    std::string typedLocation(const std::string &folder) override
    {
        const std::string location = LocationBarDriver::typedLocation(folder);
        return location == folder ? location : std::string();
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
