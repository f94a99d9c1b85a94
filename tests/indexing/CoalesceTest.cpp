#include "indexing/Coalesce.h"

#include "tests/support/TimedTaskQueue.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Call = std::pair<std::string, std::chrono::milliseconds>;

class CoalesceTest : public testing::Test
{
protected:
    void ask(const std::string &key, const std::string &mark = {})
    {
        coalesce_.coalesce(key, queue_, [this, mark](const std::string &called) {
            calls_.emplace_back(called + mark, queue_.now());
        });
    }

    TimedTaskQueue queue_;
    Coalesce coalesce_{3.0};
    std::vector<Call> calls_;
};

TEST_F(CoalesceTest, callsOnceThreeSecondsAfterTheFirstOfABurst)
{
    for (int i = 0; i < 10; ++i) {
        ask("/a", i == 0 ? "" : " of a later one");
        queue_.advance(100ms);
    }
    ask("/b");
    queue_.advance(1999ms);
    EXPECT_THAT(calls_, IsEmpty());
    queue_.advance(1ms);
    EXPECT_THAT(calls_, ElementsAre(Call("/a", 3s)));

    ask("/a"); // the next one opens a window of its own
    queue_.advance(1h);
    EXPECT_THAT(calls_, ElementsAre(Call("/a", 3s), Call("/b", 4s), Call("/a", 6s)));
}

TEST_F(CoalesceTest, keepsTheKeyPendingWhileItCalls)
{
    int calls = 0;
    coalesce_.coalesce("/a", queue_, [&](const std::string &key) {
        ++calls;
        coalesce_.coalesce(key, queue_, [&](const std::string &) { calls += 100; });
    });
    queue_.advance(1h);
    EXPECT_EQ(calls, 1);
    ask("/a");
    queue_.advance(3s);
    EXPECT_EQ(calls_.size(), 1U);
}

TEST_F(CoalesceTest, lastsThreeSecondsWhateverThePeriod)
{
    Coalesce other(0.5);
    EXPECT_EQ(other.withinPeriod(), 0.5);
    other.coalesce("/a", queue_,
                   [this](const std::string &key) { calls_.emplace_back(key, queue_.now()); });
    queue_.advance(1h);
    EXPECT_THAT(calls_, ElementsAre(Call("/a", 3s)));
}

TEST_F(CoalesceTest, givesAKeyThatWasForgottenAWholeWindowAgain)
{
    ask("/a", " forgotten");
    queue_.advance(2s);
    coalesce_.forgetAll();
    ask("/a");
    queue_.advance(1h);
    EXPECT_THAT(calls_, ElementsAre(Call("/a", 5s)));
}

} // namespace

} // namespace quillon
