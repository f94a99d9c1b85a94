#include "indexing/RillFSEventStream.h"

#include "tests/support/FakeFSEventService.h"
#include "tests/support/TimedTaskQueue.h"

#include <gmock/gmock.h>

#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Code = RillFSEventsCriticalErrorCode;

/// Collects critical errors as long as it lives.
class CriticalErrors
{
public:
    CriticalErrors()
        : before_(RillFSEventsIllogicalErrorLog::setHandler(
              [this](const RillFSEventsIllogicalErrorLog &log) {
                  seen.emplace_back(log.code, log.message);
              }))
    {}
    CriticalErrors(const CriticalErrors &) = delete;
    CriticalErrors &operator=(const CriticalErrors &) = delete;
    ~CriticalErrors() { RillFSEventsIllogicalErrorLog::setHandler(before_); }

    std::vector<std::pair<Code, std::string>> seen;

private:
    RillFSEventsIllogicalErrorLog::Handler before_;
};

class RillFSEventStreamTest : public testing::Test
{
protected:
    std::unique_ptr<RillFSEventStream> make()
    {
        auto made = RillFSEventStream::make(
            service_,
            {.pathsToWatch = {"/a", "/b"},
             .sinceWhen = RillFSEventsEventID::sinceNow(),
             .latency = 2.5,
             .flags = {RillFSEventsCreateFlags::WATCH_ROOT},
             .handler = [this](const RillFSEventsEvent &event) { events_.push_back(event); },
             .items = nullptr,
             .recorded = nullptr});
        auto *stream = std::get_if<std::unique_ptr<RillFSEventStream>>(&made);
        return stream == nullptr ? nullptr : std::move(*stream);
    }

    FakeFSEventService service_;
    TimedTaskQueue queue_;
    std::vector<RillFSEventsEvent> events_;
    CriticalErrors errors_;
};

TEST_F(RillFSEventStreamTest, asksTheServiceForWhatItWasAskedFor)
{
    const auto stream = make();
    const auto &request = service_.streams.at(0)->request;
    EXPECT_EQ(request.info, stream.get());
    EXPECT_THAT(request.paths, ElementsAre("/a", "/b"));
    EXPECT_EQ(request.sinceWhen, FSEventStreamService::SINCE_NOW);
    EXPECT_EQ(request.latency, 2.5);
    EXPECT_EQ(request.flags, 0x5U);

    const auto &made = *service_.streams.at(0);
    EXPECT_EQ(stream->start(), std::nullopt);
    EXPECT_TRUE(made.isStarted && !made.isStopped);
    stream->flushAsync();
    stream->flushSync();
    EXPECT_EQ(made.flushes, 2);
    EXPECT_TRUE(stream->setExclusionPaths({"/a/x"}));
    EXPECT_THAT(made.excluded, ElementsAre("/a/x"));
    EXPECT_THAT(stream->copyPathsBeingWatched(), ElementsAre("/a", "/b"));
    EXPECT_EQ(stream->getLatestEventID().rawValue, 7U);
    EXPECT_EQ(stream->description(), "made up");
    stream->stop();
    EXPECT_TRUE(made.isStopped && !made.isInvalidated);
    stream->invalidate();
    EXPECT_TRUE(made.isInvalidated);
}

TEST_F(RillFSEventStreamTest, tellsWhyThereIsNoStream)
{
    service_.isAbleToStart = false;
    const auto failed = make()->start();
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->code, RillFSEventsErrorCode::cannotStartStream);
    EXPECT_EQ(failed->message, std::nullopt);

    service_.isAbleToWatch = false;
    const auto made = RillFSEventStream::make(service_, {});
    const auto *error = std::get_if<RillFSEventsError>(&made);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->code, RillFSEventsErrorCode::cannotCreateStream);
    EXPECT_EQ(error->message, std::nullopt);
}

TEST_F(RillFSEventStreamTest, handsOverOneEventForEachPath)
{
    const auto stream = make();
    const auto &request = service_.streams.at(0)->request;
    request.callback(request.info, 2, std::vector<std::string>{"/a/x/", "/b\xff\n"}, {0x10, 0x21},
                     {8, 9});
    ASSERT_EQ(events_.size(), 2U);
    EXPECT_EQ(events_[0].path, "/a/x/");
    EXPECT_EQ(events_[0].flag, RillFSEventsEventFlags{0x10});
    EXPECT_EQ(events_[0].ID, RillFSEventsEventID{8});
    EXPECT_EQ(events_[1].path, "/b\xff\n");
    EXPECT_EQ(events_[1].flag, RillFSEventsEventFlags{0x21});
    EXPECT_EQ(events_[1].ID, RillFSEventsEventID{9});
    EXPECT_THAT(errors_.seen, IsEmpty());
}

TEST_F(RillFSEventStreamTest, reportsWhatCannotBeAndGoesOn)
{
    const auto stream = make();
    const auto &request = service_.streams.at(0)->request;
    const std::vector<std::string> one = {"/a"};
    request.callback(nullptr, 1, one, {0}, {1});
    request.callback(request.info, 1, "<numbers 1 2>", {0}, {1});
    request.callback(request.info, 3, one, {0, 0, 0}, {1, 2, 3});
    EXPECT_THAT(errors_.seen,
                ElementsAre(std::pair(Code::missingContextRawPointerValue, ""),
                            std::pair(Code::unexpectedPathValueType,
                                      "Cannot convert `<numbers 1 2>` into [String]."),
                            std::pair(Code::unmatchedEventParameterCounts,
                                      "Event count is `3`, but path count is `1`")));
    EXPECT_THAT(events_, IsEmpty());
    request.callback(request.info, 1, one, {0}, {1});
    EXPECT_EQ(events_.size(), 1U);
}

struct FlagRow
{
    std::uint32_t flags = 0;
    const char *text = "";

    friend std::ostream &operator<<(std::ostream &stream, const FlagRow &row)
    {
        return stream << row.text;
    }
};

class FlagRows : public testing::TestWithParam<FlagRow>
{};

TEST_P(FlagRows, areNamedFromTheLowestBit)
{
    EXPECT_EQ(RillFSEventsEventFlags{GetParam().flags}.description(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Flags, FlagRows,
    testing::Values(
        FlagRow{0, "[]"}, FlagRow{0x20, "[.rootChanged]"},
        FlagRow{0x5, "[.mustScanSubDirs, .kernelDropped]"}, FlagRow{0x80000000, "[]"},
        FlagRow{0x3fffff,
                "[.mustScanSubDirs, .userDropped, .kernelDropped, .idsWrapped, .historyDone, "
                ".rootChanged, .mount, .unmount, .itemCreated, .itemRemoved, .itemInodeMetaMod, "
                ".itemRenamed, .itemModified, .itemFinderInfoMod, .itemChangeOwner, "
                ".itemXattrMod, .itemIsFile, .itemIsDir, .itemIsSymlink, .ownEvent, "
                ".itemIsHardlink, .itemIsLastHardlink]"}));

} // namespace

} // namespace quillon
