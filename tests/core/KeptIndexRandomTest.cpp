#include "tests/core/SearchBaseSupport.h"
#include "tests/support/MemoryCacheFile.h"

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quillon {

namespace {

namespace fs = std::filesystem;

/// Changes a disk while the program does not run.
class RandomUser
{
public:
    RandomUser(const TemporaryFolder &disk, unsigned seed)
        : root_(disk.path("root")), outside_(disk.makeFolder("outside")), random_(seed)
    {}

    void act()
    {
        std::error_code ignored;
        const std::string one = somePath();
        const std::string other = somePath();
        switch (number(10)) {
        case 0:
        case 1:
        case 2:
            fs::create_directories(one, ignored);
            break;
        case 3:
            fs::remove_all(one, ignored);
            break;
        case 4:
            ::rename(one.c_str(), other.c_str());
            break;
        case 5:
            ::syscall(SYS_renameat2, AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(),
                      RENAME_EXCHANGE);
            break;
        case 6:
            ::rename(one.c_str(), (outside_ + "/kept").c_str());
            ::rename((outside_ + "/kept").c_str(), other.c_str());
            break;
        case 7:
            // Another folder of the same name, or a file in its place.
            fs::remove_all(one, ignored);
            if (number(2) == 0)
                fs::create_directories(one + "/" + NAMES[number(NAMES.size())], ignored);
            else
                std::ofstream(one) << one;
            break;
        case 8:
            std::ofstream(one + "/" + NAMES[number(NAMES.size())]) << one;
            break;
        default: {
            // The times that a user can set say nothing.
            constexpr std::array<timespec, 2> LONG_AGO{};
            ::utimensat(AT_FDCWD, one.c_str(), LONG_AGO.data(), AT_SYMLINK_NOFOLLOW);
            fs::create_directory_symlink(one, other + "/link", ignored);
        }
        }
        fs::create_directories(root_, ignored);
    }

    std::size_t number(std::size_t limit)
    {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
    }

private:
    static constexpr std::array<const char *, 6> NAMES{
        "a", "b", "c.xcodeproj", "work.sublime-project", "node_modules", "\xff -"};

    std::string somePath()
    {
        std::string path = root_;
        for (std::size_t depth = number(4); depth > 0; --depth)
            path += std::string("/") + NAMES[number(NAMES.size())];
        return path;
    }

    const std::string root_;
    const std::string outside_;
    std::mt19937 random_;
};

/// Returns once a change gets another time than every change before.
void awaitTick(const TemporaryFolder &disk)
{
    const auto changed = [&] {
        struct stat status = {};
        ::chmod(disk.writeFile("clock").c_str(), S_IRUSR | S_IWUSR);
        ::stat(disk.path("clock").c_str(), &status);
        return std::pair(status.st_ctim.tv_sec, status.st_ctim.tv_nsec);
    };
    const auto before = changed();
    while (changed() == before) {
    }
}

} // namespace

TEST(KeptIndexRandom, leavesWhatAFreshBuildWouldFind)
{
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        const TemporaryFolder disk;
        disk.makeFolder("root");
        RandomUser user(disk, seed);
        MemoryCacheFile file;
        for (int run = 0; run < 6; ++run) {
            for (std::size_t left = user.number(run == 0 ? 100 : 12); left > 0; --left)
                user.act();
            SearchBaseOver<PosixFolderLister> kept(file);
            SearchBaseOver<PosixFolderLister> fresh;
            for (auto *base : {&kept, &fresh})
                base->includeFolders({disk.path("root")});
            EXPECT_EQ(kept.searchBase.restore(), run > 0);
            kept.build();
            fresh.build();
            ASSERT_EQ(kept.searchBase.paths(), fresh.searchBase.paths()) << run;
            auto indexed = kept.indexed();
            std::ranges::sort(indexed);
            ASSERT_EQ(indexed, fresh.searchBase.paths()) << run;
            kept.searchBase.keep();
            awaitTick(disk);
        }
    }
}

} // namespace quillon
