#include "base/FileUri.h"
#include "platform/linux/filemanagers/ManagerDriver.h"

#include <filesystem>

namespace quillon {

namespace {

constexpr const char *OPEN_LOCATION = "open-location";

/// Drives nautilus, GNOME's file manager, whose windows are objects on the bus with actions of
/// their own.
class NautilusDriver : public ManagerDriver
{
public:
    explicit NautilusDriver(Surroundings surroundings)
        : ManagerDriver({.desktopIds = {"org.gnome.Nautilus", "nautilus"},
                         .windowClass = "org.gnome.nautilus",
                         .busName = "org.gnome.Nautilus",
                         .newWindowCommand = {"nautilus", "--new-window"}},
                        surroundings)
    {}

protected:
    bool selectByOwnMeans(const std::string &item, const std::string &, Deadline) override
    {
        return start({"--select"}, item);
    }

    bool show(const DesktopWindow &window, const std::string &folder, Deadline deadline) override
    {
        auto &session = surroundings().session;
        const BusObject actions{window.gtkBusName, window.gtkObjectPath, "org.gtk.Actions"};
        if (actions.service.empty() || actions.path.empty())
            return false;
        // Nautilus answers a call of an unknown action as if it had carried it out.
        const auto known =
            session.call(actions, "Describe", g_variant_new("(s)", OPEN_LOCATION), deadline);
        // Release 47 has taken the action away. A window that shows the folder already will do.
        if (!known)
            return toldFolder(window, deadline) == folder;
        GVariantBuilder parameter;
        g_variant_builder_init(&parameter, G_VARIANT_TYPE("av"));
        g_variant_builder_add(&parameter, "v", g_variant_new_string(fileUri(folder).c_str()));
        GVariantBuilder sender;
        g_variant_builder_init(&sender, G_VARIANT_TYPE("a{sv}"));
        const std::string token = surroundings().token.text();
        if (!token.empty())
            g_variant_builder_add(&sender, "{sv}", "activation-token",
                                  g_variant_new_string(token.c_str()));
        return session.call(actions, "Activate",
                            g_variant_new("(sava{sv})", OPEN_LOCATION, &parameter, &sender),
                            deadline) != nullptr;
    }

    std::optional<std::string> toldFolder(const DesktopWindow &window, Deadline deadline) override
    {
        const auto windows = surroundings().session.property(commonObject(identity().busName),
                                                             "OpenWindowsWithLocations", deadline);
        if (!windows || !g_variant_is_of_type(windows.get(), G_VARIANT_TYPE("a{sas}")))
            return std::nullopt;
        const VariantRef tabs(g_variant_lookup_value(windows.get(), window.gtkObjectPath.c_str(),
                                                     G_VARIANT_TYPE_STRING_ARRAY));
        return tabs ? shownTab(tabs.get(), window.title) : std::nullopt;
    }

private:
    /// Nautilus does not report which tab is in front, but the title is the name of that tab's
    /// folder. The home folder's title is a word in the user's language.
    static std::optional<std::string> shownTab(GVariant *tabs, const std::string &title)
    {
        std::optional<std::string> untitled;
        for (gsize i = 0; i < g_variant_n_children(tabs); ++i) {
            const char *uri = nullptr;
            g_variant_get_child(tabs, i, "&s", &uri);
            auto path = localPath(uri);
            if (path && (*path == title || std::filesystem::path(*path).filename() == title))
                return path;
            if (i == 0 || path == g_get_home_dir())
                untitled = std::move(path);
        }
        return untitled;
    }
};

} // namespace

std::unique_ptr<ManagerDriver> makeNautilusDriver(Surroundings surroundings)
{
    return std::make_unique<NautilusDriver>(surroundings);
}

} // namespace quillon
