#include "platform/linux/Applications.h"

#include <algorithm>
#include <string_view>

#include <unistd.h>

namespace quillon {

namespace {

constexpr const char *FOLDER_TYPE = "inode/directory";
constexpr std::string_view SUFFIX = ".desktop";

/// Runs in the started program: a session of its own, so that a Control-C or the end of the
/// terminal that quillon was started from does not end it.
void detach(gpointer)
{
    setsid();
}

void addId(std::vector<std::string> &ids, GAppInfo *application)
{
    const char *id = application ? g_app_info_get_id(application) : nullptr;
    if (id && std::ranges::find(ids, id) == ids.end())
        ids.emplace_back(id);
}

} // namespace

ObjectRef<GDesktopAppInfo> installedApplication(const std::string &id)
{
    if (id.empty())
        return nullptr;
    const std::string name = id.ends_with(SUFFIX) ? id : id + std::string(SUFFIX);
    return ObjectRef<GDesktopAppInfo>(g_desktop_app_info_new(name.c_str()));
}

std::vector<std::string> folderApplications()
{
    std::vector<std::string> ids;
    const ObjectRef<GAppInfo> preferred(g_app_info_get_default_for_type(FOLDER_TYPE, FALSE));
    addId(ids, preferred.get());
    GList *all = g_app_info_get_all_for_type(FOLDER_TYPE);
    for (GList *item = all; item; item = item->next)
        addId(ids, G_APP_INFO(item->data));
    g_list_free_full(all, g_object_unref);
    return ids;
}

bool isFileManager(GDesktopAppInfo *application)
{
    const char *categories = g_desktop_app_info_get_categories(application);
    return categories && std::string_view(categories).find("FileManager") != std::string_view::npos;
}

bool launch(GAppInfo *application, const std::string &uri)
{
    std::string argument = uri;
    GList uris{argument.data(), nullptr, nullptr};
    if (!G_IS_DESKTOP_APP_INFO(application))
        return g_app_info_launch_uris(application, &uris, nullptr, nullptr);
    // Without G_SPAWN_DO_NOT_REAP_CHILD nothing of the started program is left to us.
    return g_desktop_app_info_launch_uris_as_manager(G_DESKTOP_APP_INFO(application), &uris,
                                                     nullptr, G_SPAWN_SEARCH_PATH, detach, nullptr,
                                                     nullptr, nullptr, nullptr);
}

bool startProgram(const std::vector<std::string> &arguments)
{
    std::vector<std::string> texts = arguments;
    std::vector<char *> argv;
    for (std::string &text : texts)
        argv.push_back(text.data());
    argv.push_back(nullptr);
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                                G_SPAWN_STDERR_TO_DEV_NULL);
    return g_spawn_async(nullptr, argv.data(), nullptr, flags, detach, nullptr, nullptr, nullptr);
}

} // namespace quillon
