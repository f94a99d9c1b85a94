#include "app/WindowTracker.h"

#include "tests/support/ManualTaskQueue.h"
#include "tests/support/PlainWindowSystem.h"

#include <QWidget>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace quillon {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using enum WindowTracker::Window;
using Policy = WindowTracker::ActivationPolicy;

class FakeWindowSystem : public PlainWindowSystem
{
public:
    std::uintptr_t activeWindow() const override { return active; }
    void activate(std::uintptr_t window) override { activated.push_back(window); }
    void activate(std::uintptr_t, const std::string &token) override { tokens.push_back(token); }

    std::uintptr_t active = 0;
    std::vector<std::uintptr_t> activated;
    std::vector<std::string> tokens;
};

class WindowTrackerTest : public testing::Test
{
protected:
    WindowTrackerTest()
    {
        tracker_.track(searchWindow, search_, [this] { search_.show(); });
        tracker_.track(preferencesWindow, preferences_, [this] { preferences_.show(); });
    }

    ManualTaskQueue main_;
    FakeWindowSystem windows_;
    QWidget search_;
    QWidget preferences_;
    WindowTracker tracker_{main_, windows_};
};

TEST_F(WindowTrackerTest, isRegularWhileAnOrdinaryWindowIsVisible)
{
    tracker_.show(searchWindow);
    EXPECT_EQ(tracker_.activationPolicy(), Policy::accessory);
    tracker_.show(preferencesWindow);
    EXPECT_EQ(tracker_.activationPolicy(), Policy::regular);
    tracker_.close(preferencesWindow);
    main_.runAll();
    EXPECT_EQ(tracker_.activationPolicy(), Policy::regular) << "the panel is still there";
    search_.close();
    EXPECT_EQ(tracker_.activationPolicy(), Policy::regular) << "before the main queue's turn";
    main_.runAll();
    EXPECT_EQ(tracker_.activationPolicy(), Policy::accessory);
    EXPECT_FALSE(tracker_.isVisible(onboardingWindow)) << "none was ever tracked";
}

TEST_F(WindowTrackerTest, givesTheKeyboardBackOnceTheLastWindowHasGoneAndNobodyHasIt)
{
    constexpr std::uintptr_t EDITOR = 77;
    windows_.active = EDITOR;
    tracker_.show(searchWindow);
    windows_.active = search_.winId();
    tracker_.show(preferencesWindow);
    windows_.active = 0;
    tracker_.close(searchWindow);
    main_.runAll();
    EXPECT_THAT(windows_.activated, IsEmpty()) << "the preferences are still there";
    tracker_.close(preferencesWindow);
    main_.runAll();
    EXPECT_THAT(windows_.activated, ElementsAre(EDITOR));

    tracker_.show(searchWindow);
    windows_.active = EDITOR;
    tracker_.close(searchWindow);
    main_.runAll();
    EXPECT_THAT(windows_.activated, ElementsAre(EDITOR)) << "the window manager was quicker";
}

TEST_F(WindowTrackerTest, bringsForwardWhatIsVisibleButThePanel)
{
    tracker_.show(searchWindow);
    tracker_.bringForward("token");
    EXPECT_THAT(windows_.tokens, IsEmpty());
    tracker_.show(preferencesWindow);
    tracker_.bringForward("token");
    EXPECT_THAT(windows_.tokens, ElementsAre("token"));
}

} // namespace

} // namespace quillon
