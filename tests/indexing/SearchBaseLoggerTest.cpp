#include "indexing/SearchBaseLogger.h"

#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeDefaultsStore.h"

#include <gmock/gmock.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace quillon {

namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::string_view SETTING = "debug-log-fs-events";

struct Log
{
    FakeDefaultsStore store;
    CapturedOutput output;
    /// The time is 2024-05-01 09:30:00 and a fraction.
    std::chrono::system_clock::time_point now{1714555800s + 999ms};
    SearchBaseLogger logger{store, output.stream(), [this] { return now; }};
};

TEST(SearchBaseLogger, writesTheDateAndTimeBeforeEachLine)
{
    Log log;
    log.logger.log("sbl_change: /a\xff\n b");
    log.now = std::chrono::system_clock::time_point(-1s);
    log.logger.log("");
    log.now = std::chrono::system_clock::time_point(951782399s);
    log.logger.log("leap");
    EXPECT_THAT(log.logger.recentLogItems(),
                ElementsAre("2024-05-01T09:30:00Z sbl_change: /a\xff\n b", "1969-12-31T23:59:59Z ",
                            "2000-02-28T23:59:59Z leap"));
}

TEST(SearchBaseLogger, keepsTheLastHundredLines)
{
    for (const int calls : {1, 99, 100, 101, 250}) {
        Log one;
        Log all;
        std::vector<std::string> messages;
        for (int i = 1; i <= calls; ++i) {
            messages.push_back(std::to_string(i));
            one.logger.log(messages.back());
        }
        all.logger.log(std::vector<std::string>{"before"});
        all.logger.log(messages);
        const auto lines = one.logger.recentLogItems();
        ASSERT_EQ(lines.size(), static_cast<std::size_t>(std::min(calls, 100)));
        EXPECT_EQ(lines.front(), "2024-05-01T09:30:00Z " + std::to_string(std::max(1, calls - 99)));
        EXPECT_EQ(lines.back(), "2024-05-01T09:30:00Z " + std::to_string(calls));
        const auto together = all.logger.recentLogItems();
        EXPECT_TRUE(std::equal(lines.rbegin(), lines.rend(), together.rbegin())) << calls;
    }
}

TEST(SearchBaseLogger, echoesWhatTheSettingOrTheCallAsksFor)
{
    Log log;
    const std::string time = "2024-05-01T09:30:00Z ";
    const auto echo = [&](bool forcePrint) {
        log.logger.log(std::vector<std::string>{"a", "b"}, forcePrint);
        return log.output.take();
    };
    EXPECT_THAT(echo(false), IsEmpty());
    EXPECT_EQ(echo(true), time + "a\n" + time + "b\n");
    log.store.set(SETTING, {true});
    EXPECT_EQ(echo(false), time + "a\n" + time + "b\n");
    log.store.set(SETTING, {false});
    EXPECT_THAT(echo(false), IsEmpty());
    EXPECT_EQ(log.logger.recentLogItems().size(), 8U);

    log.logger.print("plain");
    EXPECT_EQ(log.output.take(), "plain\n");
    EXPECT_EQ(log.logger.recentLogItems().size(), 8U);
}

TEST(SearchBaseLogger, isReadWhileThreadsLog)
{
    Log log;
    log.store.set(SETTING, {true});
    {
        std::vector<std::jthread> writers;
        for (int i = 0; i < 3; ++i)
            writers.emplace_back([&log] {
                for (int k = 0; k < 200; ++k)
                    log.logger.log("line");
            });
        for (int i = 0; i < 200; ++i)
            EXPECT_THAT(log.logger.recentLogItems(), Each(StartsWith("2024-05-01T09:30:00Z ")));
    }
    EXPECT_EQ(log.logger.recentLogItems().size(), SearchBaseLogger::MAX_RECENT_ITEMS);
    std::string expected;
    for (int i = 0; i < 600; ++i)
        expected += "2024-05-01T09:30:00Z line\n";
    EXPECT_EQ(log.output.take(), expected);
}

} // namespace

} // namespace quillon
