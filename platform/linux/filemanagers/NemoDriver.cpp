#include "platform/linux/filemanagers/LocationBarDriver.h"

namespace quillon {

namespace {

/// Drives nemo, Cinnamon's file manager.
class NemoDriver : public LocationBarDriver
{
public:
    explicit NemoDriver(Surroundings surroundings)
        : LocationBarDriver({.desktopIds = {"nemo"},
                             .windowClass = "nemo",
                             .busName = "org.Nemo",
                             .newWindowCommand = {"nemo"}},
                            surroundings)
    {}

protected:
    bool selectByOwnMeans(const std::string &item, const std::string &, Deadline deadline) override
    {
        return selectOnceStarted({"--no-default-window"}, item, deadline);
    }

    bool show(const DesktopWindow &window, const std::string &folder, Deadline deadline) override
    {
        // This question comes first, since a busy machine may leave no time for it afterwards.
        const bool isOwn =
            surroundings().session.process(identity().busName, deadline) == window.process;
        // Otherwise nemo opens a tab in the window that was last in use, which is always its own.
        return LocationBarDriver::show(window, folder, deadline) ||
               (isOwn && start({"--existing-window"}, folder));
    }
};

} // namespace

std::unique_ptr<ManagerDriver> makeNemoDriver(Surroundings surroundings)
{
    return std::make_unique<NemoDriver>(surroundings);
}

} // namespace quillon
