#include "platform/linux/applications/GioApplicationLauncher.h"

#include "base/FileUri.h"
#include "platform/linux/applications/Applications.h"
#include "platform/linux/bus/ActivationToken.h"
#include "platform/linux/bus/GioPointers.h"

#include <gio/gdesktopappinfo.h>

#include <algorithm>
#include <string_view>

namespace quillon {

namespace {

std::string orEmpty(const char *text)
{
    return text ? text : std::string();
}

std::string orEmpty(const GString8 &text)
{
    return orEmpty(text.get());
}

Application describe(GDesktopAppInfo *application)
{
    GAppInfo *info = G_APP_INFO(application);
    const GString8 program(g_path_get_basename(orEmpty(g_app_info_get_executable(info)).c_str()));
    const std::string categories =
        ";" + orEmpty(g_desktop_app_info_get_categories(application)) + ";";
    return {
        .id = orEmpty(g_app_info_get_id(info)),
        .name = orEmpty(g_app_info_get_name(info)),
        .untranslatedName = orEmpty(GString8(g_desktop_app_info_get_string(application, "Name"))),
        .genericName = orEmpty(g_desktop_app_info_get_generic_name(application)),
        .executable = orEmpty(program),
        .icon = orEmpty(GString8(g_desktop_app_info_get_string(application, "Icon"))),
        .isShown = g_app_info_should_show(info) != 0,
        .isTerminalEmulator = categories.find(";TerminalEmulator;") != std::string::npos,
        .isFileManager = isFileManager(application),
    };
}

void takeOwnFolderOffPath()
{
    const GString8 self(g_file_read_link("/proc/self/exe", nullptr));
    if (!self)
        return;
    const GString8 folder(g_path_get_dirname(self.get()));
    const std::string path = orEmpty(g_getenv("PATH"));
    const std::string beginning = orEmpty(folder) + ":";
    if (path.starts_with(beginning))
        g_setenv("PATH", path.c_str() + beginning.size(), true);
}

} // namespace

GioApplicationLauncher::GioApplicationLauncher(const LaunchToken &token) : token_(token)
{
    takeOwnFolderOffPath();
}

std::vector<Application> GioApplicationLauncher::applications() const
{
    std::vector<Application> applications;
    GList *all = g_app_info_get_all();
    for (GList *entry = all; entry; entry = entry->next)
        if (G_IS_DESKTOP_APP_INFO(entry->data))
            applications.push_back(describe(G_DESKTOP_APP_INFO(entry->data)));
    g_list_free_full(all, g_object_unref);
    std::ranges::sort(applications, {}, &Application::id);
    return applications;
}

bool GioApplicationLauncher::launch(const std::string &id, const std::string &path)
{
    const ObjectRef<GDesktopAppInfo> application = installedApplication(id);
    if (!application)
        return false;
    GAppInfo *const info = G_APP_INFO(application.get());
    if (g_app_info_supports_files(info) || g_app_info_supports_uris(info))
        return quillon::launch(info, fileUri(path), token_.text());
    const bool isFolder = g_file_test(path.c_str(), G_FILE_TEST_IS_DIR);
    return launchIn(application.get(),
                    isFolder ? path : orEmpty(GString8(g_path_get_dirname(path.c_str()))),
                    token_.text());
}

bool GioApplicationLauncher::run(const std::string &commandLine, const std::string &folder)
{
    int count = 0;
    char **parsed = nullptr;
    if (!g_shell_parse_argv(commandLine.c_str(), &count, &parsed, nullptr))
        return false;
    const StringList words(parsed);
    return startProgram({parsed, parsed + count}, token_.text(), folder);
}

} // namespace quillon
