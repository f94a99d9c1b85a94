#include "platform/linux/applications/XdgAutostart.h"

#include "base/Require.h"
#include "platform/linux/bus/GioPointers.h"
#include "platform/linux/bus/OwnPrograms.h"

#include <gio/gdesktopappinfo.h>

#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace quillon {

namespace {

namespace fs = std::filesystem;

constexpr const char *GROUP = G_KEY_FILE_DESKTOP_GROUP;
/// The settings of some desktops write this key instead of "Hidden".
constexpr const char *SWITCH = "X-GNOME-Autostart-enabled";
constexpr int PRIVATE_FOLDER = 0700;

struct KeyFileFree
{
    void operator()(GKeyFile *file) const { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileFree>;

/// Returns the path of the command that the user runs, found from the running application.
std::string command()
{
    const fs::path bin = fs::path(ownProgramFolder()) / QUILLON_BIN_FROM_PROGRAMS;
    return (bin / "quillon").lexically_normal();
}

std::vector<std::string> standardFolders()
{
    std::vector<std::string> folders{fs::path(g_get_user_config_dir()) / "autostart"};
    for (const char *const *each = g_get_system_config_dirs(); *each; ++each)
        folders.push_back(fs::path(*each) / "autostart");
    return folders;
}

/// Returns one word of an "Exec" line.
std::string execWord(std::string_view word)
{
    constexpr std::string_view SPECIAL = "\"`$\\";
    std::string text = "\"";
    for (const char byte : word) {
        if (SPECIAL.find(byte) != std::string_view::npos)
            text += '\\';
        if (byte == '%')
            text += '%';
        text += byte;
    }
    return text + '"';
}

std::string entryIn(const std::string &folder)
{
    return fs::path(folder) / "org.quillon.Quillon.desktop";
}

bool isThere(const fs::path &path)
{
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

/// Returns whether the desktop would start this entry now.
bool starts(const std::string &path)
{
    // GIO makes no application of an entry whose program is gone.
    const ObjectRef<GDesktopAppInfo> entry(g_desktop_app_info_new_from_filename(path.c_str()));
    if (!entry || g_desktop_app_info_get_is_hidden(entry.get()) ||
        !g_desktop_app_info_get_show_in(entry.get(), nullptr))
        return false;
    return !g_desktop_app_info_has_key(entry.get(), SWITCH) ||
           g_desktop_app_info_get_boolean(entry.get(), SWITCH);
}

bool complain(const std::string &path, const std::string &reason)
{
    std::fprintf(stderr, "quillon: %s: %s\n", path.c_str(), reason.c_str());
    return false;
}

/// Replaces the file in one step.
bool save(GKeyFile *file, const std::string &path)
{
    if (const std::string folder = fs::path(path).parent_path();
        g_mkdir_with_parents(folder.c_str(), PRIVATE_FOLDER) != 0)
        return complain(folder, "cannot make the folder");
    GError *failure = nullptr;
    const bool isSaved = g_key_file_save_to_file(file, path.c_str(), &failure);
    const ErrorRef error(failure);
    return isSaved || complain(path, error->message);
}

} // namespace

XdgAutostart::XdgAutostart() : XdgAutostart(command(), standardFolders()) {}

XdgAutostart::XdgAutostart(std::string program, std::vector<std::string> folders)
    : program_(std::move(program)), folders_(std::move(folders))
{
    require(!folders_.empty(), "the user has a folder for what starts at login");
}

bool XdgAutostart::isEnabled() const
{
    return startsFrom(0);
}

bool XdgAutostart::setEnabled(bool enabled)
{
    if (enabled == isEnabled())
        return true;
    if (enabled)
        return write();
    return startsFrom(1) ? writeHidden() : remove();
}

bool XdgAutostart::startsFrom(std::size_t first) const
{
    for (std::size_t i = first; i < folders_.size(); ++i)
        if (const std::string path = entryIn(folders_[i]); isThere(path))
            return starts(path);
    return false;
}

bool XdgAutostart::write() const
{
    const KeyFile file(g_key_file_new());
    const auto set = [&file](const char *key, const std::string &value) {
        g_key_file_set_string(file.get(), GROUP, key, value.c_str());
    };
    set("Type", "Application");
    set("Name", "Quillon");
    set("Icon", "org.quillon.Quillon");
    // With this key the desktop ignores the entry once the program is gone.
    set("TryExec", program_);
    set("Exec", execWord(program_) + " --background");
    set("Terminal", "false");
    set("StartupNotify", "false");
    set(SWITCH, "true");
    return save(file.get(), entryIn(folders_.front()));
}

bool XdgAutostart::writeHidden() const
{
    const KeyFile file(g_key_file_new());
    g_key_file_set_string(file.get(), GROUP, "Type", "Application");
    g_key_file_set_string(file.get(), GROUP, "Name", "Quillon");
    g_key_file_set_boolean(file.get(), GROUP, "Hidden", true);
    return save(file.get(), entryIn(folders_.front()));
}

bool XdgAutostart::remove() const
{
    const std::string path = entryIn(folders_.front());
    std::error_code error;
    fs::remove(path, error);
    return !error || complain(path, error.message());
}

} // namespace quillon
