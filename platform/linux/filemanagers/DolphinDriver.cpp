#include "base/FileUri.h"
#include "platform/linux/bus/GioPointers.h"
#include "platform/linux/filemanagers/ManagerDriver.h"

#include <QFile>
#include <QXmlStreamReader>

#include <array>
#include <utility>

namespace quillon {

namespace {

/// Windows are numbered from 1, and closed ones leave gaps.
constexpr int MOST_WINDOWS = 16;

/// A folder that the user has a name for.
struct Place
{
    std::string name;
    std::string folder;
};

/// Returns the places that KDE's programs share. The list is empty when the user has none.
std::vector<Place> places()
{
    std::vector<Place> places;
    const GString8 path(g_build_filename(g_get_user_data_dir(), "user-places.xbel", nullptr));
    QFile file(QFile::decodeName(path.get()));
    if (!file.open(QFile::ReadOnly))
        return places;
    std::optional<std::string> folder;
    for (QXmlStreamReader list(&file); !list.atEnd(); list.readNext()) {
        if (!list.isStartElement())
            continue;
        if (list.name() == QLatin1String("bookmark")) {
            folder =
                localPath(list.attributes().value(QLatin1String("href")).toUtf8().toStdString());
        } else if (list.name() == QLatin1String("title") && folder) {
            places.push_back({list.readElementText().toStdString(), std::move(*folder)});
            folder.reset();
        }
    }
    return places;
}

/// Drives dolphin, KDE's file manager. Each of its processes has a bus name of its own, where its
/// windows are objects. It opens a folder in a tab of an existing window.
class DolphinDriver : public ManagerDriver
{
public:
    explicit DolphinDriver(Surroundings surroundings)
        : ManagerDriver({.desktopIds = {"org.kde.dolphin"},
                         .windowClass = "dolphin",
                         .busName = {},
                         .newWindowCommand = {"dolphin", "--new-window"},
                         .titleEnd = " \u2014 Dolphin"},
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
        session.call(*object, "activateWindow",
                     g_variant_new("(s)", surroundings().token.text().c_str()), deadline);
        return true;
    }

    bool selectByOwnMeans(const std::string &item, const std::string &, Deadline) override
    {
        return start({"--new-window", "--select"}, item);
    }

    /// A folder that is among the user's places has the place's name as the title.
    std::optional<std::string> toldFolder(const DesktopWindow &window, Deadline deadline) override
    {
        return openPlace(window, nameIn(window), deadline);
    }
    /// Dolphin's own places are shown in the user's language, but their names in the list are not.
    std::optional<std::string> untitledFolder(const DesktopWindow &window,
                                              Deadline deadline) override
    {
        return openPlace(window, std::nullopt, deadline);
    }
    bool isTold(const DesktopWindow &window, const std::string &folder, Deadline deadline) override
    {
        const auto object = mainWindow(window, deadline);
        return object && isOpen(*object, folder, deadline);
    }

private:
    /// Returns whether any tab of the window shows the folder.
    bool isOpen(const BusObject &mainWindow, const std::string &folder, Deadline deadline)
    {
        const auto reply = surroundings().session.call(
            mainWindow, "isUrlOpen", g_variant_new("(s)", fileUri(folder).c_str()), deadline);
        gboolean isOpen = FALSE;
        if (reply && g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(b)")))
            g_variant_get(reply.get(), "(b)", &isOpen);
        return isOpen != FALSE;
    }

    /// Returns the folder of a place that is open in the window. With a name, only places of that
    /// name count.
    std::optional<std::string> openPlace(const DesktopWindow &window,
                                         const std::optional<std::string> &name, Deadline deadline)
    {
        const auto object = mainWindow(window, deadline);
        if (!object)
            return std::nullopt;
        for (Place &place : places()) {
            if ((!name || place.name == *name) && isOpen(*object, place.folder, deadline))
                return std::move(place.folder);
        }
        return std::nullopt;
    }

    /// Returns the object on the bus that stands for the window.
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
