#include "platform/linux/FileUri.h"
#include "platform/linux/filemanagers/ManagerDriver.h"

#include <array>

namespace quillon {

namespace {

/// Windows are numbered from 1; closed ones leave gaps.
constexpr int MOST_WINDOWS = 16;

/// KDE's: each process has a bus name of its own, and its windows are objects there. A folder is
/// opened in a tab of an existing window.
class DolphinDriver : public ManagerDriver
{
public:
    explicit DolphinDriver(Surroundings surroundings)
        : ManagerDriver({.desktopIds = {"org.kde.dolphin"},
                         .windowClass = "dolphin",
                         .busName = {},
                         .newWindowCommand = {"dolphin", "--new-window"}},
                        surroundings)
    {}

protected:
    bool show(const DesktopWindow &window, const std::string &folder, Deadline deadline) override
    {
        const auto object = mainWindow(window, deadline);
        if (!object)
            return false;
        auto &session = surroundings().session;
        const std::string uri = fileUri(folder);
        const std::array<const char *, 2> uris{uri.c_str(), nullptr};
        if (!session.call(*object, "openDirectories", g_variant_new("(^asb)", uris.data(), FALSE),
                          deadline))
            return false;
        session.call(*object, "activateWindow", g_variant_new("(s)", ""), deadline);
        return true;
    }

    bool selectByOwnMeans(const std::string &item, const std::string &, Deadline) override
    {
        return start({"--new-window", "--select"}, item);
    }

private:
    /// The object that is the window.
    std::optional<BusObject> mainWindow(const DesktopWindow &window, Deadline deadline)
    {
        auto &session = surroundings().session;
        const std::string service = "org.kde.dolphin-" + std::to_string(window.process);
        for (int number = 1; number <= MOST_WINDOWS; ++number) {
            const std::string path = "/dolphin/Dolphin_" + std::to_string(number);
            const auto reply =
                session.call({service, path, "org.kde.KMainWindow"}, "winId", nullptr, deadline);
            gint64 id = 0;
            if (reply && g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(x)")))
                g_variant_get(reply.get(), "(x)", &id);
            if (id == gint64{window.id})
                return BusObject{service, path, "org.kde.dolphin.MainWindow"};
        }
        return std::nullopt;
    }
};

} // namespace

std::unique_ptr<ManagerDriver> makeDolphinDriver(Surroundings surroundings)
{
    return std::make_unique<DolphinDriver>(surroundings);
}

} // namespace quillon
