#include "app/panel/Debouncer.h"

#include <QTest>

#include <gtest/gtest.h>

namespace quillon {

using namespace std::chrono_literals;

TEST(Debouncer, runsOnceWhenCallsStopComing)
{
    int runs = 0;
    Debouncer debouncer(20ms, [&runs] { ++runs; });
    for (int i = 0; i < 5; ++i)
        debouncer.call();
    EXPECT_EQ(runs, 0);
    ASSERT_TRUE(QTest::qWaitFor([&runs] { return runs > 0; }));
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(debouncer.isPending());

    debouncer.call();
    debouncer.fireNow();
    EXPECT_EQ(runs, 2);
    EXPECT_FALSE(debouncer.isPending()) << "the pending call is the one that ran";
}

TEST(Debouncer, runsAtOnceWithoutADelay)
{
    int runs = 0;
    Debouncer debouncer(0ms, [&runs] { ++runs; });
    debouncer.call();
    debouncer.call();
    EXPECT_EQ(runs, 2);
}

} // namespace quillon
