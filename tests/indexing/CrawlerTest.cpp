#include "indexing/Crawler.h"

#include "platform/linux/disk/PosixFolderLister.h"
#include "tests/indexing/CrawlSupport.h"
#include "tests/support/FakeFSEventService.h"
#include "tests/support/FakeFolderLister.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/UnprivilegedUser.h"
#include "tests/support/WithoutThreads.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <ostream>
#include <random>
#include <set>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon {

namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using Outcome = CrawlResult::Outcome;

/// A crawl of the real disk and all of its results.
struct Crawl
{
    explicit Crawl(const std::string &root, const std::set<std::string> &extensions = {},
                   const PlainSkipRule &rule = {}, CrawlOptions options = {},
                   const std::stop_token &stop = {})
    {
        Crawler crawler(
            lister,
            std::make_shared<SkipRules>(rule.patterns, rule.includeFolders, rule.withHidden),
            options);
        const auto progress = [&](const std::string &line) {
            (line.starts_with("Enumerator error ") ? errors : others).insert(line);
        };
        result = crawler.crawl(root, extensions, sink, progress, stop);
    }

    PosixFolderLister lister;
    RecordingSink sink;
    std::multiset<std::string> errors;
    std::multiset<std::string> others;
    CrawlResult result;
};

TEST(Crawler, keepsFoldersAndIncludedFilesAndEntersNeitherPackagesNorLinks)
{
    const TemporaryFolder disk;
    disk.writeFile("a/b/work.sublime-project");
    disk.writeFile("a/WORK.SUBLIME-PROJECT");
    disk.writeFile("a/sublime-project");
    disk.writeFile("a/no-extension.");
    disk.writeFile(".hidden/x.sublime-project");
    disk.writeFile("a/.x.sublime-project");
    disk.writeFile("App.xcodeproj/inside/x.sublime-project");
    disk.writeFile("node_modules/x.sublime-project");
    fs::create_symlink(disk.path("a"), disk.path("link"));
    fs::create_symlink(disk.path("a"), disk.path("link.sublime-project"));
    disk.makeFolder("folder.sublime-project");

    const Crawl crawl(disk.path() + "//", {"sublime-project"}, {{"node_modules"}, {}});
    EXPECT_EQ(crawl.sink.rootPath, disk.path());
    EXPECT_THAT(crawl.sink.kept, ElementsAre(disk.path("App.xcodeproj"), disk.path("a"),
                                             disk.path("a/b"), disk.path("folder.sublime-project"),
                                             "file:" + disk.path("a/b/work.sublime-project"),
                                             "file:" + disk.path("link.sublime-project")));
    EXPECT_EQ(crawl.result.outcome, Outcome::complete);
    EXPECT_EQ(crawl.result.folders, 4U);
    EXPECT_EQ(crawl.result.files, 2U);
    EXPECT_THAT(crawl.others, Contains(StartsWith("Processing " + disk.path())));
}

TEST(Crawler, needsNoSecondThread)
{
    const TemporaryFolder disk;
    for (const char *folder : {"a/b/c", "a/d", "e"})
        disk.makeFolder(folder);
    std::filesystem::permissions(disk.path(), std::filesystem::perms(0755));
    EXPECT_TRUE(holdsWithoutThreads([&] {
        RecordingSink sink;
        bool isToldOfProgress = false;
        PosixFolderLister lister;
        const CrawlResult result = Crawler(lister, std::make_shared<SkipRules>())
                                       .crawl(disk.path(), {}, sink, [&](const std::string &line) {
                                           isToldOfProgress =
                                               isToldOfProgress || line.starts_with("Processing ");
                                       });
        return result.outcome == CrawlResult::Outcome::complete && sink.kept.size() == 5 &&
               isToldOfProgress;
    }));
}

TEST(Crawler, tellsArmingOfEachFolderBeforeItIsRead)
{
    FakeFolderLister lister;
    for (const char *folder : {"/r/a/b", "/r/z.app/inside", "/r/.hidden/x", "/r/skipped/x"})
        lister.add(folder);
    FakeFSEventService service;
    lister.onRead = [&](const std::string &path) { service.note("read " + path); };
    RecordingSink sink;
    const auto rules = std::make_shared<SkipRules>(std::vector<std::string>{"skipped"},
                                                   std::vector<std::string>());
    Crawler(lister, rules, {.threads = 1}, service.beginRecord()).crawl("/r/", {}, sink);
    EXPECT_THAT(service.notes(), ElementsAre("enter /r", "read /r", "enter /r/a", "read /r/a",
                                             "enter /r/a/b", "read /r/a/b"));
    EXPECT_THAT(sink.kept, ElementsAre("/r/a", "/r/a/b", "/r/z.app"));
}

TEST(Crawler, recordsWhichFolderEachOneIsIn)
{
    // Threads share much work here, and folders on the way down are opened again.
    FakeFolderLister lister;
    std::set<std::string> expected = {"enter ", "enter /r"};
    std::string chain = "/r";
    for (int depth = 0; depth < 300; ++depth) {
        chain += "/d";
        for (const char *side : {"/a", "/b/c"})
            lister.add(chain + side);
        for (const char *below : {"", "/a", "/b", "/b/c"})
            expected.insert("enter " + chain + below);
    }
    FakeFSEventService service;
    RecordingSink sink;
    Crawler(lister, std::make_shared<SkipRules>(), {.threads = 4}, service.beginRecord())
        .crawl("/", {}, sink);
    const std::vector<std::string> notes = service.notes();
    EXPECT_EQ(notes.size(), expected.size());
    EXPECT_EQ(std::set(notes.begin(), notes.end()), expected);
}

TEST(Crawler, tellsArmingWhatItCannotList)
{
    const TemporaryFolder disk;
    const std::string locked = disk.makeFolder("locked");
    fs::permissions(disk.path(), fs::perms(0755));
    fs::permissions(locked, fs::perms::none);
    FakeFSEventService service;
    PosixFolderLister lister;
    const UnprivilegedUser user;
    std::vector<std::string> notListed;
    for (const std::string &root : {disk.path(), disk.path("missing")}) {
        RecordingSink sink;
        const CrawlResult result =
            Crawler(lister, std::make_shared<SkipRules>(), {}, service.beginRecord())
                .crawl(root, {"x"}, sink);
        std::ranges::copy(result.notListed, std::back_inserter(notListed));
    }
    const std::string missing = disk.path("missing");
    EXPECT_THAT(service.notes(),
                ElementsAre("enter " + disk.path(), "enter " + locked, "not listed " + locked,
                            "enter " + missing, "not listed " + missing));
    EXPECT_THAT(notListed, ElementsAre(locked)) << "the user may be let in later";
}

TEST(Crawler, tellsWhatIsWrongWithARoot)
{
    const TemporaryFolder disk;
    disk.makeFolder("x.app/inside");
    disk.makeFolder("real/inside");
    disk.writeFile("file");
    fs::create_symlink("real", disk.path("link"));
    fs::create_symlink("nothing", disk.path("dangling"));

    EXPECT_EQ(Crawl(disk.path("x.app")).result.outcome, Outcome::packageOrMissing);
    EXPECT_EQ(Crawl(disk.path("missing")).result.outcome, Outcome::packageOrMissing);
    EXPECT_EQ(Crawl(disk.path("dangling")).result.outcome, Outcome::packageOrMissing);
    const Crawl file(disk.path("file"));
    EXPECT_EQ(file.result.outcome, Outcome::unreadable);
    EXPECT_EQ(file.result.error, std::errc::not_a_directory);
    EXPECT_THAT(file.errors,
                ElementsAre("Enumerator error " + disk.path("file") + " Not a directory"));
    EXPECT_EQ(file.sink.rootPath, disk.path("file")) << "handed over whatever it is";
    const Crawl link(disk.path("link"));
    EXPECT_THAT(link.sink.kept, ElementsAre(disk.path("link/inside")));
    const Crawl kernel("/proc");
    EXPECT_THAT(kernel.sink.kept, IsEmpty());
}

TEST(Crawler, writesThePathsBelowTheRootOfAllFoldersWithOneSlash)
{
    // The rule skips everything two levels down.
    PlainSkipRule rule;
    std::set<std::string> expected;
    for (const auto &entry : fs::directory_iterator("/")) {
        const std::string name = entry.path().filename();
        if (entry.is_symlink() || !entry.is_directory() || name.starts_with('.'))
            continue;
        expected.insert("/" + name);
        rule.patterns.push_back("/" + name + "/");
    }
    const Crawl crawl("/", {}, rule);
    EXPECT_EQ(crawl.sink.rootPath, "/");
    EXPECT_EQ(crawl.sink.kept, expected);
}

/// Finds what a crawl should find, by plain recursion over paths.
class Reference
{
public:
    Reference(const fs::path &root, const std::set<std::string> &extensions,
              const PlainSkipRule &rule)
        : extensions_(extensions), rule_(rule)
    {
        visit(root);
    }
    std::set<std::string> kept;
    std::multiset<std::string> errors;

private:
    void visit(const fs::path &folder)
    {
        std::error_code error;
        fs::directory_iterator entries(folder, error);
        if (error)
            errors.insert("Enumerator error " + folder.string() + " " + error.message());
        for (const fs::directory_entry &entry : entries) {
            const std::string path = entry.path().string();
            const std::string name = path.substr(path.rfind('/') + 1);
            const std::size_t dot = name.rfind('.');
            const bool isFolder = !entry.is_symlink() && entry.is_directory();
            if (name.starts_with('.') && !(isFolder && rule_.showsHidden(folder)))
                continue;
            if (!isFolder) {
                if (dot != std::string::npos && extensions_.contains(name.substr(dot + 1)))
                    kept.insert("file:" + path);
            } else if (!rule_.skips(path, name)) {
                kept.insert(path);
                if (!name.ends_with(".app"))
                    visit(entry.path());
            }
        }
    }

    const std::set<std::string> &extensions_;
    const PlainSkipRule &rule_;
};

class RandomTree
{
public:
    explicit RandomTree(unsigned seed) : random_(seed) { fill(disk_.path(), 0); }
    const std::string &path() const { return disk_.path(); }
    std::size_t pick(std::size_t below) { return random_() % below; }

private:
    void fill(const std::string &folder, int depth)
    {
        static const std::vector<std::string> NAMES{
            "a",     "b c",     "node_modules", "Library", ".git",      "x.app",
            "y.txt", "odd\xff", "line\nfeed",   ".hidden", "z.app.txt", "node_modules_2"};
        for (std::size_t count = pick(8); count > 0; --count) {
            const std::string path = folder + "/" + NAMES[pick(NAMES.size())];
            if (fs::exists(fs::symlink_status(path)))
                continue;
            switch (pick(depth < 4 ? 8 : 2)) {
            case 0:
                fs::create_symlink(pick(2) == 0 ? disk_.path() : "..", path);
                break;
            case 1:
                close(open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
                break;
            default:
                fs::create_directory(path);
                fill(path, depth + 1);
                if (pick(10) == 0)
                    chmod(path.c_str(), pick(2) == 0 ? 0300 : 0400);
            }
        }
    }

    TemporaryFolder disk_;
    std::mt19937 random_;
};

TEST(Crawler, findsWhatAPlainRecursionFindsInRandomTrees)
{
    const UnprivilegedUser user;
    for (unsigned seed = 0; seed < 24; ++seed) {
        RandomTree tree(seed);
        PlainSkipRule rule{{"node_modules", "/Library/"}, {tree.path() + "/a"}};
        if (seed % 3 == 0)
            rule.includeFolders = {tree.path() + "/Library/a", tree.path() + "/node_modules"};
        std::set<std::string> extensions;
        if (seed % 2 == 0)
            extensions = {"txt"};
        if (seed % 4 == 1)
            rule.withHidden = {seed % 8 == 1 ? tree.path() : "/"};
        else if (seed % 4 == 2)
            rule.withHidden = {tree.path() + "/a", tree.path() + "/b c/a", tree.path() + "/.git"};
        const Reference expected(tree.path(), extensions, rule);
        const Crawl crawl(tree.path(), extensions, rule, {.threads = seed % 4 + 1});
        ASSERT_EQ(crawl.sink.kept, expected.kept) << seed;
        ASSERT_EQ(crawl.errors, expected.errors) << seed;
        ASSERT_EQ(crawl.result.errors, expected.errors.size());
        ASSERT_EQ(crawl.result.folders + crawl.result.files, expected.kept.size());
    }
}

constexpr std::array OTHERS = {"e", "f", "g", "h"};

/// Returns the name of a level's folder, which has 50 bytes. The names differ, since otherwise
/// either all or none of them would be listed before their siblings.
std::string chainName(int level)
{
    return std::string(46, 'd') + std::to_string(1000 + level);
}

/// Makes a chain of folders below the path, each beside "side/in" and other folders, so that most
/// of the chain is entered before all of these.
void makeDeepChain(const std::string &path, int depth)
{
    int folder = open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < depth; ++level) {
        const std::string name = chainName(level);
        mkdirat(folder, name.c_str(), 0700);
        mkdirat(folder, "side", 0700);
        mkdirat(folder, "side/in", 0700);
        for (const char *other : OTHERS)
            mkdirat(folder, other, 0700);
        const int below = openat(folder, name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        close(folder);
        folder = below;
    }
    close(folder);
}

class DescriptorLimit
{
public:
    explicit DescriptorLimit(rlim_t limit)
    {
        getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit changed{limit, before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &changed);
    }
    DescriptorLimit(const DescriptorLimit &) = delete;
    DescriptorLimit &operator=(const DescriptorLimit &) = delete;
    ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_ = {};
};

struct DeepRow
{
    const char *name;
    rlim_t descriptors;
    unsigned threads;
    friend std::ostream &operator<<(std::ostream &stream, const DeepRow &row)
    {
        return stream << row.name;
    }
};

class DeepCrawl : public testing::TestWithParam<DeepRow>
{};

TEST_P(DeepCrawl, reachesTheEndOfATreeDeeperThanPathsMayBeLong)
{
    constexpr int DEPTH = 400;
    const TemporaryFolder disk;
    makeDeepChain(disk.path(), DEPTH);

    const DescriptorLimit limit(GetParam().descriptors);
    const Crawl crawl(disk.path(), {"txt"}, {}, {.threads = GetParam().threads});
    EXPECT_THAT(crawl.errors, IsEmpty());
    ASSERT_EQ(crawl.sink.kept.size(), (3U + OTHERS.size()) * DEPTH);
    std::string path = disk.path();
    for (int level = 0; level < DEPTH; ++level) {
        ASSERT_TRUE(crawl.sink.kept.contains(path + "/side/in")) << level;
        path += "/" + chainName(level);
        ASSERT_TRUE(crawl.sink.kept.contains(path)) << level;
    }
    const Crawl again(path.substr(0, path.size() - 2 * (chainName(0).size() + 1)));
    EXPECT_EQ(again.sink.kept.size(), 2 * (3U + OTHERS.size())) << "a root's path may be long too";
}

INSTANTIATE_TEST_SUITE_P(Rows, DeepCrawl,
                         testing::Values(DeepRow{"shared", 1024, 2}, DeepRow{"alone", 1024, 1},
                                         DeepRow{"fewDescriptors", 40, 2}),
                         [](const auto &row) { return row.param.name; });

TEST(Crawler, survivesATreeThatChangesWhileItIsCrawled)
{
    const TemporaryFolder outside;
    outside.makeFolder("never");
    const TemporaryFolder disk;
    for (int i = 0; i < 20; ++i)
        disk.makeFolder("f" + std::to_string(i) + "/g/h");
    const std::jthread changes([&](const std::stop_token &stop) {
        std::mt19937 random(1);
        std::error_code ignored;
        while (!stop.stop_requested()) {
            const std::string path = disk.path("f" + std::to_string(random() % 20));
            const std::string other = disk.path("f" + std::to_string(random() % 20) + "/g");
            fs::rename(path, other + "/moved" + std::to_string(random() % 3), ignored);
            fs::remove_all(other, ignored);
            fs::create_symlink(outside.path(), other, ignored);
            fs::remove(other, ignored);
            fs::create_directories(path + "/g/h", ignored);
        }
    });
    for (int round = 0; round < 200; ++round) {
        const Crawl crawl(disk.path());
        ASSERT_EQ(crawl.result.outcome, Outcome::complete);
        for (const std::string &path : crawl.sink.kept) {
            ASSERT_THAT(path, StartsWith(disk.path() + "/"));
            ASSERT_EQ(path.find("/never"), std::string::npos);
        }
    }
}

TEST(Crawler, entersNoLinkThatTookThePlaceOfAFolder)
{
    /// Puts a link where the crawl has listed a folder and not opened it yet.
    class ReplacingSink final : public RecordingSink
    {
    public:
        explicit ReplacingSink(std::function<void()> replace) : replace_(std::move(replace)) {}
        void add(Token parent, std::span<Entry> entries) override
        {
            RecordingSink::add(parent, entries);
            if (replace_)
                std::exchange(replace_, nullptr)();
        }

    private:
        std::function<void()> replace_;
    };
    const TemporaryFolder outside;
    outside.makeFolder("never");
    for (const std::set<std::string> &extensions : {std::set<std::string>(), {"txt"}}) {
        const TemporaryFolder disk;
        const std::string folder = disk.makeFolder("folder");
        ReplacingSink sink([&] {
            fs::remove(folder);
            fs::create_directory_symlink(outside.path(), folder);
        });
        PosixFolderLister lister;
        Crawler crawler(lister, std::make_shared<SkipRules>());
        const CrawlResult result = crawler.crawl(disk.path(), extensions, sink);
        EXPECT_THAT(sink.kept, ElementsAre(folder));
        EXPECT_EQ(result.errors, 1U);
    }
}

TEST(Crawler, tellsOfNoMoreFoldersThanALabelCanShow)
{
    FakeFolderLister lister;
    constexpr int FOLDERS = 20'000;
    for (int i = 0; i < FOLDERS; ++i)
        lister.add("/a/" + std::to_string(i % 100) + "/" + std::to_string(i));
    Crawler crawler(lister, std::make_shared<SkipRules>());
    RecordingSink sink;
    int told = 0;
    const auto start = std::chrono::steady_clock::now();
    crawler.crawl("/a", {}, sink, [&](const std::string &line) {
        EXPECT_THAT(line, StartsWith("Processing /a"));
        ++told;
    });
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    EXPECT_GE(told, 1);
    EXPECT_LE(told, 2 + time.count() * 65);
}

TEST(Crawler, endsEarlyWhenItIsStopped)
{
    class StoppingSink final : public RecordingSink
    {
    public:
        explicit StoppingSink(std::stop_source &source) : source_(source) {}
        void add(Token parent, std::span<Entry> entries) override
        {
            RecordingSink::add(parent, entries);
            source_.request_stop();
        }

    private:
        std::stop_source &source_;
    };
    const TemporaryFolder disk;
    for (int i = 0; i < 300; ++i)
        disk.makeFolder("a/" + std::to_string(i) + "/b");
    std::stop_source source;
    StoppingSink sink(source);
    PosixFolderLister lister;
    Crawler crawler(lister, std::make_shared<SkipRules>());
    const CrawlResult result = crawler.crawl(disk.path(), {"x"}, sink, {}, source.get_token());
    EXPECT_EQ(result.outcome, Outcome::stopped);
    EXPECT_LT(sink.kept.size(), 302U);
    EXPECT_EQ(Crawl(disk.path(), {}, {}, {}, source.get_token()).result.outcome, Outcome::stopped);
}

} // namespace

} // namespace quillon
