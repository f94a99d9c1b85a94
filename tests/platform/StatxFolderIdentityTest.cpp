#include "platform/linux/disk/StatxFolderIdentity.h"

#include "tests/support/Needs.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace quillon {
namespace {

namespace fs = std::filesystem;

class StatxFolderIdentityTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QUILLON_NEEDS(folders.identify(root.path()), "a file system that keeps birth times");
    }

    TemporaryFolder root;
    StatxFolderIdentity folders;
};

TEST_F(StatxFolderIdentityTest, findsAFolderUnderItsNewName)
{
    const auto id = folders.identify(root.makeFolder("parent/old"));
    ASSERT_TRUE(id);
    root.makeFolder("parent/other");
    root.writeFile("parent/file");
    const std::string renamed = root.path("parent/new \xFF");
    fs::rename(root.path("parent/old"), renamed);
    EXPECT_EQ(folders.identify(renamed), id);
    EXPECT_EQ(folders.find(root.path("parent"), *id), renamed);
    fs::rename(renamed, root.path("elsewhere"));
    EXPECT_EQ(folders.find(root.path("parent"), *id), std::nullopt);
    EXPECT_EQ(folders.find(root.path("missing"), *id), std::nullopt);
}

TEST_F(StatxFolderIdentityTest, tellsAFolderFromTheNextOneWithItsInode)
{
    const auto id = folders.identify(root.makeFolder("parent/old"));
    fs::remove(root.path("parent/old"));
    for (const std::string name : {"parent/a", "parent/b", "parent/c"})
        root.makeFolder(name); // One of these most likely has the inode now.
    EXPECT_EQ(folders.find(root.path("parent"), id.value()), std::nullopt);
}

TEST_F(StatxFolderIdentityTest, takesALinkToAFolderForAFolderOfItsOwn)
{
    const std::string target = root.makeFolder("target");
    fs::create_directory_symlink(target, root.path("link"));
    const auto id = folders.identify(root.path("link"));
    ASSERT_TRUE(id);
    EXPECT_NE(id, folders.identify(target));
    fs::rename(root.path("link"), root.path("renamed"));
    EXPECT_EQ(folders.find(root.path(), *id), root.path("renamed"));
    fs::remove(target);
    EXPECT_EQ(folders.presence(root.path("renamed")), FolderPresence::away);
    EXPECT_EQ(folders.find(root.path(), *id), std::nullopt);
}

TEST_F(StatxFolderIdentityTest, takesAFileForNoFolder)
{
    const std::string file = root.writeFile("file");
    EXPECT_EQ(folders.presence(file), FolderPresence::away);
    EXPECT_EQ(folders.identify(file), std::nullopt);
    EXPECT_EQ(folders.identify(root.path("missing")), std::nullopt);
}

TEST_F(StatxFolderIdentityTest, asksForTheRightToListAndToEnter)
{
    const std::string folder = root.makeFolder("folder");
    EXPECT_EQ(folders.presence(folder), FolderPresence::there);
    EXPECT_EQ(folders.presence(root.path("missing")), FolderPresence::away);
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may read everything";
    for (const mode_t mode : {0000U, 0100U, 0400U}) {
        ASSERT_EQ(::chmod(folder.c_str(), mode), 0);
        EXPECT_EQ(folders.presence(folder), FolderPresence::unreadable) << mode;
    }
}

} // namespace
} // namespace quillon
