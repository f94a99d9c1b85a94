#include "platform/linux/applications/XbelRecentItems.h"

#include "base/FileUri.h"
#include "base/PathText.h"
#include "platform/linux/applications/Applications.h"
#include "platform/linux/bus/GioPointers.h"

#include <gio/gio.h>

#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

// Every program that opens files reads this list, adds to it and writes it anew. There is no lock
// that all of them take, so the file is read again for each item and exchanged by a rename at once.
// If another program writes between the two, the item is added to what that program wrote.
//
// Users who want no list make the file one that cannot be written, or a link to nowhere. A rename
// would replace such a file, so it is left alone, as is a file that is no list.

namespace quillon {

namespace {

constexpr const char *PRIVACY_SCHEMA = "org.gnome.desktop.privacy";
constexpr int PRIVATE_FOLDER = 0700;
constexpr int PRIVATE_FILE = 0600;
constexpr int MOST_ATTEMPTS = 5;
/// The list names the program that opened an item and a command that opens the item again.
constexpr const char *PROGRAM = "Quillon";
constexpr const char *COMMAND = "xdg-open %u";

struct BookmarksFree
{
    void operator()(GBookmarkFile *bookmarks) const { g_bookmark_file_free(bookmarks); }
};
struct SchemaUnref
{
    void operator()(GSettingsSchema *schema) const { g_settings_schema_unref(schema); }
};

/// Tells one content of the file from another.
struct Stamp
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    std::int64_t size = 0;

    friend bool operator==(const Stamp &, const Stamp &) = default;
};

/// Returns the stamp of a file that may be replaced, one without values where there is no file, or
/// nothing for anything else.
std::optional<Stamp> stampOf(const std::string &file)
{
    struct stat status = {};
    if (lstat(file.c_str(), &status) != 0)
        return errno == ENOENT ? std::optional(Stamp()) : std::nullopt;
    if (!S_ISREG(status.st_mode) || access(file.c_str(), R_OK | W_OK) != 0)
        return std::nullopt;
    return Stamp{.device = status.st_dev,
                 .inode = status.st_ino,
                 .seconds = status.st_mtim.tv_sec,
                 .nanoseconds = status.st_mtim.tv_nsec,
                 .size = status.st_size};
}

/// Returns whether the desktop keeps a list at all. Where the desktop has no such setting, it does.
bool isWanted()
{
    GSettingsSchemaSource *source = g_settings_schema_source_get_default();
    const std::unique_ptr<GSettingsSchema, SchemaUnref> schema(
        source ? g_settings_schema_source_lookup(source, PRIVACY_SCHEMA, TRUE) : nullptr);
    if (!schema)
        return true;
    const ObjectRef<GSettings> privacy(g_settings_new_full(schema.get(), nullptr, nullptr));
    const auto has = [&schema](const char *key) {
        return g_settings_schema_has_key(schema.get(), key);
    };
    // An age of no days means that nothing is remembered.
    constexpr const char *SWITCH = "remember-recent-files";
    constexpr const char *AGE = "recent-files-max-age";
    return (!has(SWITCH) || g_settings_get_boolean(privacy.get(), SWITCH)) &&
           (!has(AGE) || g_settings_get_int(privacy.get(), AGE) != 0);
}

std::string typeOf(const std::string &path)
{
    if (g_file_test(path.c_str(), G_FILE_TEST_IS_DIR))
        return FOLDER_TYPE;
    const GString8 content(g_content_type_guess(path.c_str(), nullptr, 0, nullptr));
    const GString8 type(g_content_type_get_mime_type(content.get()));
    return type ? type.get() : "application/octet-stream";
}

} // namespace

std::string standardRecentItemsPath()
{
    return pathIn(g_get_user_data_dir(), "recently-used.xbel");
}

void XbelRecentItems::add(const std::string &path)
{
    if (!isWanted())
        return;
    const MutexLock lock(mutex_);
    for (int i = 0; i < MOST_ATTEMPTS; ++i)
        if (tryToAdd(path) != Outcome::changedMeanwhile)
            return;
}

XbelRecentItems::Outcome XbelRecentItems::tryToAdd(const std::string &path) const
{
    const auto stamp = stampOf(file_);
    if (!stamp)
        return Outcome::leftAlone;
    const std::unique_ptr<GBookmarkFile, BookmarksFree> items(g_bookmark_file_new());
    if (*stamp != Stamp() && !g_bookmark_file_load_from_file(items.get(), file_.c_str(), nullptr))
        return stampOf(file_) == stamp ? Outcome::leftAlone : Outcome::changedMeanwhile;

    const std::string uri = fileUri(std::string(withoutTrailingSlashes(path)));
    g_bookmark_file_set_mime_type(items.get(), uri.c_str(), typeOf(path).c_str());
    g_bookmark_file_add_application(items.get(), uri.c_str(), PROGRAM, COMMAND);
    gsize length = 0;
    const GString8 text(g_bookmark_file_to_data(items.get(), &length, nullptr));
    if (!text)
        return Outcome::leftAlone;
    g_mkdir_with_parents(std::string(parentFolder(file_)).c_str(), PRIVATE_FOLDER);
    if (stampOf(file_) != stamp)
        return Outcome::changedMeanwhile;
    const bool isWritten =
        g_file_set_contents_full(file_.c_str(), text.get(), static_cast<gssize>(length),
                                 G_FILE_SET_CONTENTS_CONSISTENT, PRIVATE_FILE, nullptr);
    return isWritten ? Outcome::written : Outcome::leftAlone;
}

} // namespace quillon
