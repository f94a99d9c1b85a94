#include "platform/linux/applications/XbelRecentItems.h"

#include "platform/linux/bus/GioPointers.h"
#include "tests/support/Needs.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>

namespace quillon {

namespace {

using testing::UnorderedElementsAre;

constexpr const char *LIST = "data/recently-used.xbel";

struct BookmarksFree
{
    void operator()(GBookmarkFile *bookmarks) const { g_bookmark_file_free(bookmarks); }
};
using Bookmarks = std::unique_ptr<GBookmarkFile, BookmarksFree>;

class XbelRecentItemsTest : public testing::Test
{
protected:
    XbelRecentItemsTest()
    {
        // The settings of whoever runs the tests play no part.
        ::setenv("GSETTINGS_BACKEND", "memory", 1);
    }

    /// Reads the list as the file choosers do.
    Bookmarks list() const
    {
        Bookmarks bookmarks(g_bookmark_file_new());
        EXPECT_TRUE(
            g_bookmark_file_load_from_file(bookmarks.get(), folder.path(LIST).c_str(), nullptr));
        return bookmarks;
    }
    std::vector<std::string> uris() const
    {
        const Bookmarks bookmarks = list();
        const StringList all(g_bookmark_file_get_uris(bookmarks.get(), nullptr));
        std::vector<std::string> uris;
        for (char **uri = all.get(); *uri; ++uri)
            uris.emplace_back(*uri);
        return uris;
    }

    TemporaryFolder folder;
    XbelRecentItems items{folder.path(LIST)};
};

TEST_F(XbelRecentItemsTest, makesAListThatOnlyTheUserReads)
{
    const std::string opened = folder.makeFolder("caf\xe9 #1");
    const std::string letter = folder.writeFile("letter.txt", "Dear");
    items.add(opened + "/");
    items.add(letter);
    items.add(opened);
    const std::string uri = "file://" + folder.path() + "/caf%E9%20%231";
    EXPECT_THAT(uris(), UnorderedElementsAre(uri, "file://" + letter));
    const Bookmarks bookmarks = list();
    const GString8 type(g_bookmark_file_get_mime_type(bookmarks.get(), uri.c_str(), nullptr));
    EXPECT_STREQ(type.get(), "inode/directory");
    const GString8 text(
        g_bookmark_file_get_mime_type(bookmarks.get(), ("file://" + letter).c_str(), nullptr));
    EXPECT_STREQ(text.get(), "text/plain");
    unsigned count = 0;
    EXPECT_TRUE(g_bookmark_file_get_application_info(bookmarks.get(), uri.c_str(), "Quillon",
                                                     nullptr, &count, nullptr, nullptr));
    EXPECT_EQ(count, 2U);
    struct stat status = {};
    ASSERT_EQ(stat(folder.path(LIST).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(XbelRecentItemsTest, keepsWhatOtherProgramsHaveEntered)
{
    const Bookmarks others(g_bookmark_file_new());
    g_bookmark_file_set_title(others.get(), "file:///tmp/picture.png", "A picture");
    g_bookmark_file_add_application(others.get(), "file:///tmp/picture.png", "Paint", "paint %u");
    folder.makeFolder("data");
    ASSERT_TRUE(g_bookmark_file_to_file(others.get(), folder.path(LIST).c_str(), nullptr));
    items.add("/tmp");
    EXPECT_THAT(uris(), UnorderedElementsAre("file:///tmp/picture.png", "file:///tmp"));
    const GString8 title(
        g_bookmark_file_get_title(list().get(), "file:///tmp/picture.png", nullptr));
    EXPECT_STREQ(title.get(), "A picture");
    EXPECT_TRUE(
        g_bookmark_file_has_application(list().get(), "file:///tmp/picture.png", "Paint", nullptr));
}

TEST_F(XbelRecentItemsTest, losesNoItemOfTwoThreads)
{
    std::vector<std::string> wanted;
    for (int i = 0; i < 40; ++i)
        wanted.push_back("file:///tmp/" + std::to_string(i));
    const auto addFrom = [&](int first) {
        for (int i = first; i < 40; i += 2)
            items.add("/tmp/" + std::to_string(i));
    };
    std::jthread other(addFrom, 0);
    addFrom(1);
    other.join();
    EXPECT_THAT(uris(), testing::UnorderedElementsAreArray(wanted));
}

/// A list that must stay as it is.
struct AloneRow
{
    const char *name;
    const char *text;

    friend std::ostream &operator<<(std::ostream &out, const AloneRow &row)
    {
        return out << row.name;
    }
};

class AloneRows : public XbelRecentItemsTest, public testing::WithParamInterface<AloneRow>
{};

TEST_P(AloneRows, areLeftAlone)
{
    folder.writeFile(LIST, GetParam().text);
    items.add("/tmp");
    EXPECT_EQ(folder.readFile(LIST), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Lists, AloneRows,
    testing::Values(AloneRow{"empty", ""}, AloneRow{"noXml", "my notes"},
                    AloneRow{"torn",
                             "<?xml version=\"1.0\"?><xbel version=\"1.0\"><bookmark href="},
                    AloneRow{"anotherFormat", "<?xml version=\"1.0\"?><list/>"}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(XbelRecentItemsTest, leavesWhatIsNoFileAlone)
{
    folder.makeFolder("data");
    std::filesystem::create_symlink("/dev/null", folder.path(LIST));
    items.add("/tmp");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path(LIST)));
    std::filesystem::remove(folder.path(LIST));
    folder.makeFolder(LIST);
    items.add("/tmp");
    EXPECT_TRUE(std::filesystem::is_directory(folder.path(LIST)));
}

/// A setting of the desktop, and whether an item is entered then.
struct PrivacyRow
{
    const char *name;
    const char *settings;
    bool isEntered;

    friend std::ostream &operator<<(std::ostream &out, const PrivacyRow &row)
    {
        return out << row.name;
    }
};

class PrivacyRows : public XbelRecentItemsTest, public testing::WithParamInterface<PrivacyRow>
{};

TEST_P(PrivacyRows, areRespected)
{
    QUILLON_NEEDS_TOOL("glib-compile-schemas");
    // GIO reads these once, so each row needs a process of its own.
    folder.writeFile("schemas/privacy.gschema.xml", R"(<schemalist>
        <schema id="org.gnome.desktop.privacy" path="/org/gnome/desktop/privacy/">
        <key name="remember-recent-files" type="b"><default>true</default></key>
        <key name="recent-files-max-age" type="i"><default>-1</default></key>
        </schema></schemalist>)");
    const std::string schemas = folder.path("schemas");
    ASSERT_EQ(std::system(("glib-compile-schemas " + schemas).c_str()), 0);
    folder.writeFile("config/glib-2.0/settings/keyfile",
                     std::string("[org/gnome/desktop/privacy]\n") + GetParam().settings + "\n");
    ::setenv("GSETTINGS_SCHEMA_DIR", schemas.c_str(), 1);
    ::setenv("GSETTINGS_BACKEND", "keyfile", 1);
    ::setenv("XDG_CONFIG_HOME", folder.path("config").c_str(), 1);
    items.add("/tmp");
    EXPECT_EQ(std::filesystem::exists(folder.path(LIST)), GetParam().isEntered);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, PrivacyRows,
    testing::Values(PrivacyRow{"nothingSet", "", true},
                    PrivacyRow{"notRemembered", "remember-recent-files=false", false},
                    PrivacyRow{"forgottenAtOnce", "recent-files-max-age=0", false}),
    [](const auto &row) { return std::string(row.param.name); });

} // namespace

} // namespace quillon
