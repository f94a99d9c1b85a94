#include "base/PathText.h"
#include "tests/core/SearchBaseSupport.h"
#include "tests/support/MemoryCacheFile.h"
#include "tests/support/RandomUser.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/mount.h>
#include <sys/stat.h>

#include <mntent.h>

namespace quillon {

namespace {

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

constexpr std::int64_t LONG_AGO = 1'000'000'000'000'000'000;

/// Mounts and unmounts file systems in folders below one, where the test has the right to.
class RandomMounts
{
public:
    /// All that is mounted below the outer folder is unmounted in the end.
    RandomMounts(std::string outer, std::string root, unsigned seed)
        : outer_(std::move(outer)), root_(std::move(root)), random_(seed)
    {}
    ~RandomMounts()
    {
        for (const std::string &point : mounted())
            ::umount2(point.c_str(), MNT_DETACH);
    }
    RandomMounts(const RandomMounts &) = delete;
    RandomMounts &operator=(const RandomMounts &) = delete;

    void act()
    {
        const std::vector<std::string> points = mounted();
        const std::vector<std::string> folders = this->folders();
        if (!points.empty() && random_() % 2 == 0)
            ::umount2(points[random_() % points.size()].c_str(), MNT_DETACH);
        else if (!folders.empty())
            mountAt(folders[random_() % folders.size()], folders[random_() % folders.size()]);
    }

private:
    void mountAt(const std::string &point, const std::string &shown)
    {
        if (random_() % 2 == 0) {
            ::mount(shown.c_str(), point.c_str(), nullptr, MS_BIND, nullptr);
            return;
        }
        if (::mount("none", point.c_str(), "tmpfs", 0, nullptr) == 0)
            std::filesystem::create_directories(point + "/a/b");
    }
    std::vector<std::string> mounted() const
    {
        std::vector<std::string> points;
        const std::unique_ptr<std::FILE, decltype(&::endmntent)> mounts(
            ::setmntent("/proc/self/mounts", "r"), &::endmntent);
        while (const struct mntent *mount = ::getmntent(mounts.get()))
            if (std::string_view(mount->mnt_dir).starts_with(outer_ + "/"))
                points.insert(points.begin(), mount->mnt_dir);
        return points;
    }
    std::vector<std::string> folders() const
    {
        std::vector<std::string> folders;
        std::error_code ignored;
        for (const auto &entry : std::filesystem::recursive_directory_iterator(root_, ignored))
            if (entry.is_directory(ignored) && !entry.is_symlink(ignored))
                folders.push_back(entry.path());
        return folders;
    }

    const std::string outer_;
    const std::string root_;
    std::minstd_rand random_;
};

} // namespace

TEST(KeptIndexRandom, leavesWhatAFreshBuildWouldFind)
{
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        const TemporaryFolder disk;
        const std::string root = disk.makeFolder("above/root");
        RandomUser user(root, disk.makeFolder("outside"), seed);
        RandomMounts mounts(disk.path(), root, seed);
        MemoryCacheFile file;
        for (int run = 0; run < 6; ++run) {
            // After a few changes most folders are as before, and after many hardly any are.
            for (unsigned left = run == 0 ? 100 : 3 * seed % 40; left > 0; --left)
                user.act();
            if (seed % 2 == 1)
                mounts.act();
            SearchBaseOver<PosixFolderLister> kept(file);
            if (seed % 5 == 4 && run % 2 == 1)
                kept.now = LONG_AGO; // the clock was set back
            SearchBaseOver<PosixFolderLister> fresh;
            const std::string inner = root + (seed % 2 == 0 ? "/a" : "/.hidden");
            for (auto *base : {&kept, &fresh}) {
                // The folder whose hidden folders are searched may be missing.
                base->includeFolders(seed % 3 == 2 ? std::vector{root, inner} : std::vector{root});
                if (seed % 3 != 0)
                    base->finder.bookmarks.searchHidden(seed % 3 == 2 ? inner : root, true);
                base->finder.excludePatternsPreferences.add("skipped");
                base->finder.includeFilePatternPreferences.add("txt");
            }
            EXPECT_EQ(kept.searchBase.restore(), run > 0);
            kept.build();
            fresh.build();
            ASSERT_EQ(kept.searchBase.paths(), fresh.searchBase.paths()) << run;
            auto indexed = kept.indexed();
            std::ranges::sort(indexed);
            const std::vector<std::string> stored = fresh.searchBase.paths();
            // What an include folder that is away held is found, though it is not stored.
            if (seed % 3 == 2 && !std::filesystem::is_directory(inner))
                std::erase_if(indexed, [&](const std::string &path) {
                    return isAtOrBelow(path, inner) && !std::ranges::binary_search(stored, path);
                });
            ASSERT_EQ(indexed, stored) << run;
            kept.searchBase.keep();
            awaitTick(disk);
        }
    }
}

} // namespace quillon
