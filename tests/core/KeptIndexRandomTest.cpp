#include "tests/core/SearchBaseSupport.h"
#include "tests/support/MemoryCacheFile.h"
#include "tests/support/RandomUser.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <utility>

#include <sys/stat.h>

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

} // namespace

TEST(KeptIndexRandom, leavesWhatAFreshBuildWouldFind)
{
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        const TemporaryFolder disk;
        const std::string root = disk.makeFolder("above/root");
        RandomUser user(root, disk.makeFolder("outside"), seed);
        MemoryCacheFile file;
        for (int run = 0; run < 6; ++run) {
            // After a few changes most folders are as before, and after many hardly any are.
            for (unsigned left = run == 0 ? 100 : 3 * seed % 40; left > 0; --left)
                user.act();
            SearchBaseOver<PosixFolderLister> kept(file);
            SearchBaseOver<PosixFolderLister> fresh;
            for (auto *base : {&kept, &fresh}) {
                base->includeFolders({root});
                base->finder.excludePatternsPreferences.add("skipped");
                base->finder.includeFilePatternPreferences.add("txt");
            }
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
