#include "app/panel/SearchWindow.h"

#include "app/panel/IconSource.h"
#include "tests/support/FakeActionServices.h"
#include "tests/support/ManualTaskQueue.h"
#include "tests/support/PlainWindowSystem.h"

#include <QTest>

#include <gtest/gtest.h>

namespace quillon {
namespace {

class OneWindowActive : public PlainWindowSystem
{
public:
    std::uintptr_t activeWindow() const override
    {
        ++asked;
        return active;
    }
    std::uintptr_t active = 0;
    mutable int asked = 0;
};

TEST(SearchWindow, hidesForAWindowOfOthersAndForNoneThatMadeWayForIt)
{
    constexpr std::uintptr_t OF_OTHERS = 1'000'000;
    OneWindowActive windows;
    FakeActionServices services;
    ManualTaskQueue queue;
    IconSource icons(services.workspace, queue, queue);
    QWidget madeWay;
    windows.active = madeWay.winId();
    SearchWindow panel(icons, windows);
    panel.present();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));

    const int asked = windows.asked;
    QWidget other;
    other.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return windows.asked > asked; }));
    EXPECT_TRUE(QTest::qWaitForWindowActive(&panel)) << "it asks for the keyboard again";
    EXPECT_TRUE(panel.isVisible());

    windows.active = OF_OTHERS;
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !panel.isVisible(); }));
}

} // namespace
} // namespace quillon
