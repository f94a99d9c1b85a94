#include "platform/linux/disk/DirectoryRecords.h"
#include "platform/linux/disk/MountPoints.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/UnprivilegedUser.h"

#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace quillon {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Pair;
using testing::UnorderedElementsAre;
using Wanted = FolderLister::Wanted;

/// Returns the names in a folder and whether each is a folder.
std::map<std::string, bool> entriesOf(OpenFolder &folder)
{
    std::map<std::string, bool> entries;
    FolderBatch batch;
    std::error_code error;
    while (folder.read(batch, error))
        for (const FolderEntry &entry : batch.entries)
            EXPECT_TRUE(entries.emplace(entry.name, entry.isFolder).second) << entry.name;
    EXPECT_FALSE(error);
    return entries;
}

class PosixFolderListerTest : public testing::Test
{
protected:
    std::unique_ptr<OpenFolder> open(const std::string &path, Wanted wanted = Wanted::everything)
    {
        return PosixFolderLister().open(path, wanted, error_);
    }
    TemporaryFolder disk_;
    std::error_code error_;
};

TEST_F(PosixFolderListerTest, tellsFoldersFromEverythingElse)
{
    disk_.makeFolder("folder");
    disk_.makeFolder("odd \xff\n");
    disk_.writeFile("file");
    fs::create_symlink("folder", disk_.path("link"));
    mkfifo(disk_.path("pipe").c_str(), 0600);
    const auto folder = open(disk_.path());
    ASSERT_TRUE(folder);
    EXPECT_THAT(entriesOf(*folder),
                UnorderedElementsAre(Pair("folder", true), Pair("odd \xff\n", true),
                                     Pair("file", false), Pair("link", false),
                                     Pair("pipe", false)));
}

TEST_F(PosixFolderListerTest, readsFoldersThatDoNotFitIntoOneRead)
{
    for (int i = 0; i < 5000; ++i)
        disk_.writeFile("a rather long name of a file, number " + std::to_string(i));
    EXPECT_EQ(entriesOf(*open(disk_.path())).size(), 5000U);
}

TEST_F(PosixFolderListerTest, followsLinksOfItsRootOnly)
{
    disk_.makeFolder("real/inside");
    disk_.writeFile("real/file");
    fs::create_symlink("real", disk_.path("link"));
    fs::create_symlink("inside", disk_.path("real/link"));

    const auto root = open(disk_.path("link"));
    ASSERT_TRUE(root);
    EXPECT_TRUE(root->open("inside", error_));
    for (const std::string name : {"link", "file"}) {
        EXPECT_FALSE(root->open(name, error_));
        EXPECT_EQ(error_, std::errc::not_a_directory) << name;
    }
    EXPECT_FALSE(root->open("missing", error_));
    EXPECT_EQ(error_, std::errc::no_such_file_or_directory);
    EXPECT_TRUE(root->open("inside", error_));
    EXPECT_FALSE(error_);
}

TEST_F(PosixFolderListerTest, givesTheStampOfAFolderWithoutOpeningIt)
{
    disk_.makeFolder("folder");
    disk_.writeFile("file");
    fs::create_symlink("folder", disk_.path("link"));
    const auto root = open(disk_.path());
    ASSERT_TRUE(root);
    const FolderStamp stamp = root->childStamp("folder");
    EXPECT_TRUE(stamp.isKnown());
    EXPECT_EQ(stamp, root->open("folder", error_)->stamp());
    EXPECT_EQ(stamp.isLasting, root->open("folder", error_)->stamp().isLasting);
    for (const std::string name : {"link", "file", "missing"})
        EXPECT_FALSE(root->childStamp(name).isKnown()) << name;
    const auto top = open("/");
    EXPECT_FALSE(top->childStamp("dev").isKnown()) << "another file system";

    // A change of the rights changes the time as well.
    fs::permissions(disk_.path("folder"), fs::perms::none);
    EXPECT_NE(root->childStamp("folder"), stamp);
}

TEST_F(PosixFolderListerTest, staysOutOfFileSystemsThatHoldNoFiles)
{
    EXPECT_FALSE(open("/proc/self"));
    EXPECT_FALSE(error_);
    const auto root = open("/");
    ASSERT_TRUE(root);
    for (const std::string name : {"proc", "sys"}) {
        EXPECT_FALSE(root->open(name, error_)) << name;
        EXPECT_FALSE(error_) << name;
    }
    EXPECT_TRUE(root->open("dev", error_)) << "another file system, but one for files";
}

TEST_F(PosixFolderListerTest, opensNoFolderWithoutSubfoldersWhereOnlyThoseAreWanted)
{
    disk_.makeFolder("leaf");
    disk_.writeFile("leaf/file");
    disk_.makeFolder("full/.hidden");
    disk_.makeFolder("locked");
    fs::permissions(disk_.path("locked"), fs::perms::none);
    fs::permissions(disk_.path(), fs::perms::all);
    struct statfs status = {};
    ASSERT_EQ(statfs(disk_.path().c_str(), &status), 0);
    const bool isExact = status.f_type == 0xEF53 || status.f_type == 0x01021994; // ext4, tmpfs

    const auto root = open(disk_.path(), Wanted::subfolders);
    ASSERT_TRUE(root);
    EXPECT_EQ(root->open("leaf", error_) == nullptr, isExact);
    EXPECT_FALSE(error_);
    EXPECT_TRUE(root->open("full", error_));
    EXPECT_FALSE(root->open("missing", error_));
    EXPECT_EQ(error_, std::errc::no_such_file_or_directory);
    {
        const UnprivilegedUser user;
        const auto asOther = open(disk_.path(), Wanted::subfolders);
        ASSERT_TRUE(asOther);
        EXPECT_FALSE(asOther->open("locked", error_));
        EXPECT_EQ(error_, std::errc::permission_denied) << "the error is not kept back";
    }
    EXPECT_TRUE(open(disk_.path())->open("leaf", error_)) << "files count there";
}

/// Builds records as the kernel does.
class Records
{
public:
    void add(const std::string &name, unsigned char type)
    {
        const std::size_t at = bytes_.size();
        const auto length =
            static_cast<unsigned short>((offsetof(dirent64, d_name) + name.size() + 1 + 7) / 8 * 8);
        bytes_.resize(at + length);
        std::memcpy(&bytes_[at + offsetof(dirent64, d_reclen)], &length, sizeof length);
        std::memcpy(&bytes_[at + offsetof(dirent64, d_type)], &type, sizeof type);
        std::memcpy(&bytes_[at + offsetof(dirent64, d_name)], name.c_str(), name.size() + 1);
    }
    const std::vector<std::byte> &bytes() const { return bytes_; }

private:
    std::vector<std::byte> bytes_;
};

TEST(DirectoryRecords, asksForTypesThatTheFileSystemKeepsBack)
{
    const TemporaryFolder disk;
    disk.makeFolder("folder");
    disk.writeFile("file");
    fs::create_symlink("folder", disk.path("link"));
    Records records;
    for (const std::string name : {".", "..", "folder", "file", "link", "gone"})
        records.add(name, DT_UNKNOWN);
    records.add("said to be one", DT_DIR);

    const int folder = ::open(disk.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    std::vector<FolderEntry> entries;
    readDirectoryRecords(records.bytes(), folder, entries);
    close(folder);
    std::vector<std::pair<std::string, bool>> found;
    for (const FolderEntry &entry : entries)
        found.emplace_back(entry.name, entry.isFolder);
    EXPECT_THAT(found, ElementsAre(Pair("folder", true), Pair("file", false), Pair("link", false),
                                   Pair("gone", false), Pair("said to be one", true)));
}

TEST(MountPoints, areReadWithOddNamesAndWithoutSenselessLines)
{
    std::vector<std::string> points;
    for (const Mount &mount :
         parseMounts("22 28 0:20 / /sys rw,nosuid shared:7 - sysfs sysfs rw\n"
                     "40 28 8:1 /a\\040b /mnt/odd\\040\\011\\012\\134\\400 rw - ext4 x rw\n"
                     "senseless\n\n"
                     "28 1 8:2 / / rw,relatime - ext4 /dev/root rw\n"))
        points.push_back(mount.point);
    EXPECT_THAT(points, ElementsAre("/sys", "/mnt/odd \t\n\\\\400", "/"));
    EXPECT_THAT(mountPoints().value_or(std::vector<std::string>()), IsSupersetOf({"/", "/proc"}));
}

} // namespace

} // namespace quillon
