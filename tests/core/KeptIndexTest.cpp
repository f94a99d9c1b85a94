#include "core/KeptIndex.h"

#include "core/IndexKeeper.h"
#include "tests/core/SearchBaseSupport.h"
#include "tests/support/FakeFSEventService.h"
#include "tests/support/MemoryCacheFile.h"
#include "tests/support/TimedTaskQueue.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const IndexBasis BASIS{
    .settings = {"node_modules", "", "1"}, .folders = {"/"}, .missing = {"/far"}};

/// Returns texts of every kind that an index may hold, ascending.
std::vector<std::string> oddTexts()
{
    return {"/",
            "/home/ann/a\nb\xff\t-",
            "/home/ann/docs",
            "/home/ann/" + std::string(300, 'x') + "/deep",
            "/home/ann/" + std::string(70'000, 'y'),
            "/usr/share"};
}

std::vector<std::string> textsWith(const PathTree &tree, PathTree::Flags flag)
{
    std::vector<std::string> texts;
    std::vector<PathTree::NodeId> nodes{PathTree::ROOT};
    while (!nodes.empty()) {
        const PathTree::NodeId node = nodes.back();
        nodes.pop_back();
        if ((tree.node(node).flags & flag) != 0)
            texts.push_back(tree.text(node));
        for (PathTree::NodeId child = tree.firstChild(node); child != PathTree::NONE;
             child = tree.node(child).nextSibling)
            nodes.push_back(child);
    }
    std::ranges::sort(texts);
    return texts;
}

/// Fills an index with texts and writes it.
std::string written(PathIndex &index, const std::vector<std::string> &texts)
{
    FolderMarks marks;
    {
        const WritingIndex writing(index.lock);
        for (const std::string &text : texts) {
            const auto node = index.tree.insert(text, PathTree::STORED | PathTree::CANDIDATE);
            marks.set(node, text.size() % 3 == 0 ? FolderMarks::NO_FOLDER : text.size() % 3);
        }
        index.tree.removeFlags(index.tree.insert("/home/gone", PathTree::STORED), PathTree::STORED);
    }
    return KeptIndex::write(index, BASIS, marks, {}).value();
}

bool readInto(PathTree &tree, FolderMarks &marks, std::string_view bytes)
{
    const auto enter = [&](PathTree::NodeId parent, const auto &component) {
        const auto node = tree.appendNew(parent, component.name, component.flags);
        marks.set(node, component.mark);
        return node;
    };
    if (!KeptIndex::read(bytes, enter))
        return false;
    tree.endAppending();
    return tree.childTable().has_value();
}

} // namespace

TEST(KeptIndex, holdsEveryTextAndMark)
{
    PathIndex index;
    const std::string bytes = written(index, oddTexts());
    EXPECT_EQ(KeptIndex::basis(bytes), BASIS);
    PathTree tree;
    FolderMarks marks;
    ASSERT_TRUE(readInto(tree, marks, bytes));
    EXPECT_TRUE(textsWith(tree, PathTree::CANDIDATE) == oddTexts());
    EXPECT_EQ(tree.count(PathTree::STORED), oddTexts().size());
    for (const std::string &text : oddTexts())
        EXPECT_EQ(marks.at(tree.find(text)),
                  text.size() % 3 == 0 ? FolderMarks::NO_FOLDER : text.size() % 3);
    EXPECT_EQ(marks.at(tree.find("/home")), FolderMarks::UNKNOWN);
}

TEST(KeptIndex, refusesWhatIsDamaged)
{
    PathIndex index;
    const std::string bytes = written(index, {"/home/ann/docs", "/usr/share"});
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_FALSE(KeptIndex::basis(bytes.substr(0, size))) << size;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::string damaged = bytes;
        damaged[i] = static_cast<char>(damaged[i] ^ 0x21);
        EXPECT_FALSE(KeptIndex::basis(damaged)) << i;
        // The checksum may be right by chance, or on purpose.
        PathTree tree;
        FolderMarks marks;
        readInto(tree, marks, damaged);
    }
    EXPECT_FALSE(KeptIndex::basis(bytes + "x"));
}

class KeptSearchBaseTest : public testing::Test
{
protected:
    using Base = SearchBaseOver<FakeFolderLister>;

    /// Begins the next run of the program, over the same disk and file.
    Base &start()
    {
        base_ = std::make_unique<Base>(file_, isWatched_ ? &watching_ : nullptr);
        base_->now = now_;
        for (const std::string &folder : folders_) {
            base_->lister.add(folder);
            base_->lister.stamps[folder] = {.device = 1,
                                            .inode = 7 + folder.size(),
                                            .changed = changed_[folder],
                                            .isLasting = isLasting_};
        }
        if (hasPackage_)
            base_->lister.add(package_);
        base_->lister.onRead = [this](const std::string &path) {
            const std::scoped_lock lock(mutex_);
            read_.push_back(path);
        };
        base_->lister.onOpen = [this](const std::string &path) {
            const std::scoped_lock lock(mutex_);
            opened_.push_back(path);
        };
        base_->includeFolders(included_);
        return *base_;
    }
    /// Returns the folders that are read by a run that begins with the kept index.
    std::vector<std::string> readByNextRun()
    {
        read_.clear();
        opened_.clear();
        Base &base = start();
        base.searchBase.restore();
        base.build();
        base.searchBase.keep();
        std::ranges::sort(read_);
        return std::exchange(read_, {});
    }
    std::vector<std::string> paths() const { return base_->searchBase.paths(); }

    MemoryCacheFile file_;
    FakeFSEventService service_;
    TimedTaskQueue events_;
    const SearchBaseWatcher::Services watching_{.events = service_, .eventQueue = events_};
    bool isWatched_ = false;
    bool hasPackage_ = false;
    bool isLasting_ = true;
    std::int64_t now_ = 4'000'000'000;
    std::vector<std::string> included_{"/usr"};
    std::vector<std::string> folders_{"/usr", "/usr/bin", "/usr/share", "/usr/share/doc"};
    /// This folder is listed and never read, and its name could be that of a file.
    const std::string package_ = "/usr/bin/x.xcodeproj";
    std::map<std::string, std::int64_t> changed_;
    std::mutex mutex_;
    std::vector<std::string> read_;
    std::vector<std::string> opened_;
    std::unique_ptr<Base> base_;
};

TEST_F(KeptSearchBaseTest, answersAtOnceAndReadsWhatHasChanged)
{
    EXPECT_EQ(readByNextRun(), folders_) << "nothing is kept";
    EXPECT_THAT(readByNextRun(), IsEmpty());
    EXPECT_THAT(opened_, UnorderedElementsAre("/usr", "/usr/share")) << "folders are in them";
    EXPECT_EQ(file_.writes, 1) << "nothing new is to be written";
    EXPECT_EQ(file_.confirmations, 1);

    folders_.emplace_back("/usr/share/man");
    changed_["/usr/share"] = 1;
    Base &base = start();
    ASSERT_TRUE(base.searchBase.restore());
    EXPECT_THAT(paths(), ElementsAre("/usr", "/usr/bin", "/usr/share", "/usr/share/doc"));
    EXPECT_EQ(base.indexed(), paths());
    read_.clear();
    base.build();
    EXPECT_THAT(read_, UnorderedElementsAre("/usr/share", "/usr/share/man"));
    EXPECT_EQ(paths(), folders_);
    EXPECT_EQ(base.indexed(), folders_);
    const std::string compared = base.searchBase.treeDescription();
    file_.bytes.reset();
    readByNextRun();
    EXPECT_EQ(compared, base_->searchBase.treeDescription());
}

TEST_F(KeptSearchBaseTest, tellsPackagesFromFiles)
{
    hasPackage_ = true;
    readByNextRun();
    const auto indexed = paths();
    EXPECT_THAT(indexed, testing::Contains(package_));
    EXPECT_THAT(readByNextRun(), IsEmpty());
    EXPECT_EQ(paths(), indexed);
}

TEST_F(KeptSearchBaseTest, trustsOnlyStampsThatAreOldAndLast)
{
    now_ = 2'000'000'000;
    readByNextRun();
    now_ = 2'000'000'001;
    EXPECT_EQ(readByNextRun(), folders_) << "they may have been changed after they were read";
    EXPECT_THAT(readByNextRun(), IsEmpty());
    isLasting_ = false;
    EXPECT_EQ(readByNextRun(), folders_);
    EXPECT_EQ(readByNextRun(), folders_) << "nothing is learnt from stamps that do not last";
}

TEST_F(KeptSearchBaseTest, takesNothingThatOtherSettingsMade)
{
    readByNextRun();
    const auto isTaken = [this](const auto &change) {
        Base &base = start();
        change(base);
        const bool isRestored = base.searchBase.restore();
        base.build();
        return isRestored;
    };
    EXPECT_TRUE(isTaken([](Base &) {}));
    EXPECT_FALSE(isTaken([](Base &base) { base.includeFolders({"/usr", "/home"}); }));
    EXPECT_FALSE(isTaken([](Base &base) { base.finder.excludePatternsPreferences.add("doc"); }));
    EXPECT_THAT(paths(), ElementsAre("/usr", "/usr/bin", "/usr/share"));
    EXPECT_FALSE(isTaken([](Base &base) { base.finder.includeFilePatternPreferences.add("c"); }));
    EXPECT_EQ(base_->searchBase.paths(), folders_);
    folders_.insert(folders_.begin() + 1, "/usr/.config");
    const auto searchHidden = [](Base &base) { base.finder.bookmarks.searchHidden("/usr", true); };
    EXPECT_FALSE(isTaken(searchHidden));
    EXPECT_EQ(base_->searchBase.paths(), folders_);
    base_->searchBase.keep();
    EXPECT_TRUE(isTaken(searchHidden));
    EXPECT_EQ(base_->searchBase.paths(), folders_);
}

TEST_F(KeptSearchBaseTest, beginsAnewWhereFoldersAreAway)
{
    const TemporaryFolder disk;
    included_.push_back(disk.makeFolder("stick"));
    folders_.push_back(included_.back());
    readByNextRun();
    std::filesystem::remove(included_.back());
    folders_.pop_back();
    EXPECT_EQ(readByNextRun(), folders_);
    EXPECT_EQ(paths(), folders_);
    EXPECT_THAT(base_->searchBase.awayFolders(), ElementsAre(included_.back()));
}

TEST_F(KeptSearchBaseTest, beginsAnewFromATreeThatNoDiskHas)
{
    readByNextRun();
    PathIndex twins;
    {
        const WritingIndex writing(twins.lock);
        const auto usr = twins.tree.insert("/usr", PathTree::STORED);
        for (int i = 0; i < 2; ++i)
            twins.tree.appendNew(usr, "bin", PathTree::STORED);
        twins.tree.endAppending();
    }
    file_.bytes = KeptIndex::write(twins, KeptIndex::basis(*file_.bytes).value(), {}, {});
    EXPECT_EQ(readByNextRun(), folders_);
    EXPECT_EQ(paths(), folders_);
}

TEST_F(KeptSearchBaseTest, asksAgainAboutWhatDidNotAnswerWhenItWasCompared)
{
    isWatched_ = true;
    readByNextRun();
    // The queue must not run the tasks of a run that has ended.
    base_->searchBase.reset();
    events_.advance(0s);
    folders_.pop_back();
    changed_["/usr/share"] = 1;
    Base &base = start();
    base.lister.unanswered.insert("/usr/share/doc");
    ASSERT_TRUE(base.searchBase.restore());
    base.build();
    events_.advance(1s);
    EXPECT_THAT(paths(), testing::Contains("/usr/share/doc"));
    base.lister.unanswered.clear();
    events_.advance(1min);
    EXPECT_EQ(paths(), folders_);
}

TEST_F(KeptSearchBaseTest, isWrittenAgainSomeTimeAfterAChange)
{
    isWatched_ = true;
    readByNextRun();
    base_->lister.add("/usr/new");
    service_.streams.back()->send({"/usr/new"});
    events_.advance(1min);
    EXPECT_THAT(paths(), testing::Contains("/usr/new"));
    EXPECT_EQ(file_.writes, 1);
    events_.advance(10min);
    EXPECT_EQ(file_.writes, 2);
    events_.advance(24h);
    EXPECT_EQ(file_.writes, 2) << "nothing has changed since";

    // The stamp is what it was before the change, as after a disk was restored from a snapshot.
    folders_.emplace_back("/usr/new");
    base_ = nullptr;
    Base &base = start();
    ASSERT_TRUE(base.searchBase.restore());
    EXPECT_THAT(paths(), testing::Contains("/usr/new"));
    read_.clear();
    base.build();
    EXPECT_THAT(read_, UnorderedElementsAre("/usr", "/usr/new")) << "the others have their marks";
}

TEST_F(KeptSearchBaseTest, isNotWrittenUnlessItIsWhole)
{
    Base &base = start();
    base.searchBase.keep();
    std::stop_source stop;
    stop.request_stop();
    base.build(stop.get_token());
    base.searchBase.keep();
    EXPECT_EQ(file_.writes, 0);
    base.build();
    base.searchBase.reset();
    base.searchBase.keep();
    EXPECT_EQ(file_.writes, 0);

    base.build();
    file_.error = std::make_error_code(std::errc::no_space_on_device);
    base.searchBase.keep();
    EXPECT_THAT(base.output.take(), HasSubstr("The index is not kept for the next start: "));
    base.searchBase.keep();
    EXPECT_EQ(base.output.take(), "") << "it was said before";
    file_.error = {};
    base.searchBase.keep();
    EXPECT_EQ(file_.writes, 1);
}

} // namespace quillon
