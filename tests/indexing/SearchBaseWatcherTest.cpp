#include "indexing/SearchBaseWatcher.h"

#include "base/SerialTaskQueue.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseIgnorePaths.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/FakeFSEventService.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TimedTaskQueue.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quillon {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class Receiver final : public SearchBaseWatcherDelegate
{
public:
    void watchedFoldersChanged(const std::vector<std::string> &paths,
                               const std::stop_token &stop) override
    {
        EXPECT_FALSE(stop.stop_requested());
        told.insert(told.end(), paths.begin(), paths.end());
        ++times;
        if (onTold)
            onTold(stop);
    }
    std::vector<std::string> take() { return std::exchange(told, {}); }

    std::vector<std::string> told;
    int times = 0;
    std::function<void(const std::stop_token &stop)> onTold;
};

class SearchBaseWatcherTest : public testing::Test
{
protected:
    SearchBaseWatcherTest()
    {
        DefaultsDictionary bookmarks;
        for (const std::string &root : {root_, innerRoot_})
            bookmarks.emplace(root, DefaultsValue{DefaultsData{root}});
        store_.set("qln-bookmarks", {bookmarks});
        ignorePaths_.refresh();
        watcher_.setDelegate(receiver_);
    }
    void start() { watcher_.startWatching({root_, innerRoot_}, nullptr, nullptr); }
    FakeFSEventService::Stream &stream(std::size_t number) { return *service_.streams.at(number); }

    TemporaryFolder disk_;
    const std::string root_ = disk_.makeFolder("home");
    const std::string innerRoot_ = disk_.makeFolder("home/.git/kept");
    FakeDefaultsStore store_;
    StatxFolderIdentity identity_;
    SearchBaseFinder finder_{store_, identity_};
    SearchBaseIgnorePaths ignorePaths_{finder_};
    FakeFSEventService service_;
    TimedTaskQueue queue_;
    std::shared_ptr<Receiver> receiver_ = std::make_shared<Receiver>();
    SearchBaseWatcher watcher_{ignorePaths_, {.events = service_, .eventQueue = queue_}, queue_};
};

TEST_F(SearchBaseWatcherTest, watchesTheIncludeFoldersFromNowOn)
{
    EXPECT_FALSE(watcher_.status());
    start();
    ASSERT_EQ(service_.streams.size(), 1U);
    EXPECT_THAT(stream(0).request.paths, ElementsAre(root_, innerRoot_));
    EXPECT_EQ(stream(0).request.sinceWhen, FSEventStreamService::SINCE_NOW);
    EXPECT_EQ(stream(0).request.latency, 10.0);
    EXPECT_EQ(stream(0).request.flags, 0x5U);
    EXPECT_EQ(stream(0).queue, &queue_);
    EXPECT_TRUE(stream(0).isStarted);
    ASSERT_TRUE(watcher_.status());
    EXPECT_EQ(watcher_.status()->folders, 3U);

    watcher_.stopWatching();
    EXPECT_TRUE(stream(0).isStopped && stream(0).isInvalidated);
    EXPECT_FALSE(watcher_.status());
    watcher_.stopWatching();
}

TEST_F(SearchBaseWatcherTest, tellsOfAFolderOncePerBurst)
{
    start();
    const std::string docs = root_ + "/Docs";
    for (int i = 0; i < 10; ++i) {
        stream(0).send({docs, docs});
        queue_.advance(100ms);
    }
    queue_.advance(1999ms);
    EXPECT_THAT(receiver_->told, IsEmpty());
    queue_.advance(1ms);
    EXPECT_THAT(receiver_->take(), ElementsAre(docs));
    queue_.advance(1h);
    EXPECT_THAT(receiver_->told, IsEmpty());

    receiver_.reset();
    stream(0).send({docs});
    queue_.advance(1h);
}

TEST_F(SearchBaseWatcherTest, leavesOutWhatConcernsNobody)
{
    start();
    stream(0).send({root_ + "/end-of-history"}, 0x10);
    stream(0).send({root_ + "/end-of-history-and-more"}, 0x11);
    stream(0).send({root_ + "/x/.git/objects", root_ + "/node_modules", root_ + "/kept/"});
    stream(0).send({innerRoot_, innerRoot_ + "/x", root_});
    // Patterns apply to folders, not to the names of files.
    const std::string file = root_ + "/node_modules.txt";
    stream(0).send({file, root_ + "/node_modules/a.txt"}, 0x10000);
    queue_.advance(1h);
    EXPECT_THAT(receiver_->take(), ElementsAre(root_ + "/end-of-history-and-more", root_ + "/kept/",
                                               innerRoot_, innerRoot_ + "/x", root_, file));
}

TEST_F(SearchBaseWatcherTest, tellsNothingOfAnOldWatch)
{
    const std::string docs = root_ + "/Docs";
    start();
    stream(0).send({docs});
    queue_.advance(2s);
    stream(0).send({root_ + "/in-the-queue"});
    watcher_.stopWatching();
    start();
    stream(1).send({docs});
    queue_.advance(2999ms);
    EXPECT_THAT(receiver_->told, IsEmpty()) << "the window of the old watch is over";
    queue_.advance(1ms);
    EXPECT_THAT(receiver_->take(), ElementsAre(docs));
    EXPECT_TRUE(stream(0).isDestroyed);

    // The watch is stopped and started again while a delegate is being called.
    stream(1).send({docs, root_ + "/with-it"});
    queue_.advance(1s);
    stream(1).send({root_ + "/pending"});
    receiver_->onTold = [&](const std::stop_token &stop) {
        receiver_->onTold = nullptr;
        watcher_.stopWatching();
        EXPECT_TRUE(stop.stop_requested());
        start();
        EXPECT_FALSE(stream(1).isDestroyed) << "it may be in use";
    };
    receiver_->times = 0;
    queue_.advance(1h);
    EXPECT_THAT(receiver_->take(), ElementsAre(docs, root_ + "/with-it"));
    EXPECT_EQ(receiver_->times, 1) << "what is due at the same time is told at once";
    EXPECT_TRUE(stream(1).isDestroyed);
    stream(2).send({docs});
    queue_.advance(1h);
    EXPECT_THAT(receiver_->take(), ElementsAre(docs));
}

TEST_F(SearchBaseWatcherTest, watchesNothingWhereThatIsImpossible)
{
    start();
    service_.isAbleToWatch = false;
    EXPECT_EQ(watcher_.beginRecord(), nullptr);
    start();
    EXPECT_FALSE(watcher_.status());
    watcher_.stopWatching();
    watcher_.settle();

    service_.isAbleToWatch = true;
    service_.isAbleToStart = false;
    start();
    watcher_.stopWatching();
    EXPECT_TRUE(stream(1).isInvalidated);
}

TEST_F(SearchBaseWatcherTest, startsAgainWhatTheSystemRefused)
{
    service_.isAbleToStart = false;
    start();
    queue_.advance(1h);
    EXPECT_FALSE(stream(0).isStarted);
    stream(0).isAbleToStart = true;
    queue_.advance(1min);
    EXPECT_TRUE(stream(0).isStarted);
}

TEST_F(SearchBaseWatcherTest, settlesOnceEverythingIsTold)
{
    SerialTaskQueue queue("org.example.events");
    SearchBaseWatcher watcher(
        ignorePaths_, {.events = service_, .eventQueue = queue, .coalesceDelay = 20ms}, queue);
    watcher.setDelegate(receiver_);
    watcher.startWatching({root_, innerRoot_}, nullptr, nullptr);
    std::vector<std::string> paths;
    for (int i = 0; i < 100; ++i)
        paths.push_back(root_ + "/" + std::to_string(i));
    stream(0).send(paths);
    watcher.settle();
    EXPECT_EQ(stream(0).flushes, 1);
    EXPECT_THAT(receiver_->told, paths);
    ASSERT_TRUE(queue.finish(1min));
}

} // namespace

} // namespace quillon
