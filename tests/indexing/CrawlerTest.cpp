#include "indexing/Crawler.h"

#include "platform/linux/PosixFolderLister.h"
#include "tests/indexing/CrawlSupport.h"

#include <gmock/gmock.h>

namespace quillon {
namespace {

using testing::ElementsAre;

TEST(Crawler, keepsFoldersAndIncludedFiles)
{
    TemporaryFolder disk;
    disk.makeFolder("a/b");
    disk.writeFile("a/x.txt");
    PosixFolderLister lister;
    RecordingSink sink;
    Crawler(lister, std::make_shared<SkipRules>()).crawl(disk.path(), {"txt"}, sink);
    EXPECT_THAT(sink.kept,
                ElementsAre(disk.path("a"), disk.path("a/b"), "file:" + disk.path("a/x.txt")));
}

} // namespace
} // namespace quillon
