#include "platform/linux/settings/UserCacheFile.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace quillon {

namespace {

namespace fs = std::filesystem;

class UserCacheFileTest : public testing::Test
{
protected:
    std::size_t filesInFolder() const
    {
        return static_cast<std::size_t>(std::distance(
            fs::directory_iterator(disk_.path("cache/quillon")), fs::directory_iterator()));
    }

    TemporaryFolder disk_;
    const std::string path_ = disk_.path("cache/quillon/index");
    UserCacheFile file_{path_};
};

} // namespace

TEST_F(UserCacheFileTest, holdsWhatWasWrittenForTheUserAlone)
{
    EXPECT_EQ(file_.read(), std::nullopt);
    EXPECT_EQ(file_.confirmedAt(), std::nullopt);
    const std::string bytes("\0\xff index", 8);
    EXPECT_FALSE(file_.write(bytes));
    EXPECT_EQ(file_.read(), bytes);
    struct stat status = {};
    ASSERT_EQ(::stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);

    fs::last_write_time(path_, fs::file_time_type::clock::now() - std::chrono::hours(2));
    const auto hourAgo = std::chrono::system_clock::now() - std::chrono::hours(1);
    EXPECT_LT(file_.confirmedAt(), hourAgo);
    file_.confirm();
    EXPECT_GT(file_.confirmedAt(), hourAgo);
    EXPECT_EQ(file_.read(), bytes);

    EXPECT_FALSE(file_.write(""));
    EXPECT_EQ(file_.read(), "");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(UserCacheFileTest, readsOnlyAFileOfTheUsersOwn)
{
    const std::string elsewhere = disk_.writeFile("elsewhere", "bytes");
    fs::create_directories(disk_.path("cache/quillon"));
    fs::create_symlink(elsewhere, path_);
    EXPECT_EQ(file_.read(), std::nullopt);
    EXPECT_FALSE(file_.write("mine"));
    EXPECT_EQ(file_.read(), "mine");
    EXPECT_EQ(disk_.readFile("elsewhere"), "bytes");

    fs::remove(path_);
    ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
    EXPECT_EQ(file_.read(), std::nullopt) << "and does not wait for a writer";

    constexpr uid_t NOBODY = 65534;
    EXPECT_FALSE(file_.write("bytes"));
    if (::chown(path_.c_str(), NOBODY, NOBODY) == 0) {
        EXPECT_EQ(file_.read(), std::nullopt) << "it is somebody else's by now";
    }
}

TEST_F(UserCacheFileTest, leavesEverythingAsItWasWhereItCannotBeWritten)
{
    fs::create_directories(path_ + "/in-the-way");
    EXPECT_TRUE(file_.write("bytes"));
    EXPECT_EQ(filesInFolder(), 1U);
    EXPECT_TRUE(UserCacheFile("/proc/none/index").write("bytes"));

    // A program that ended during a write leaves such a file.
    fs::remove_all(path_);
    const std::string leftover = disk_.writeFile("cache/quillon/index.aBcDeF", "half");
    fs::last_write_time(leftover, fs::file_time_type::clock::now() - std::chrono::minutes(2));
    disk_.writeFile("cache/quillon/index.bAcDeF", "being written");
    EXPECT_FALSE(file_.write("bytes"));
    EXPECT_EQ(filesInFolder(), 2U);
}

} // namespace quillon
