#include "actions/AppleEventAccess.h"
#include "actions/AppleScriptRunner.h"
#include "app/setup/AppleEventPermissionCoordinator.h"
#include "app/widgets/WriteFault.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/ManualTaskQueue.h"
#include "tests/support/PlainWindowSystem.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>

namespace quillon {

namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *KEY = "preemptive-apple-event-access";

TEST(AppleEventAccess, wasAskedForOnceAnythingIsStored)
{
    FakeDefaultsStore store;
    const AppleEventAccess access(store);
    EXPECT_FALSE(access.hasAskedForAccess());
    for (const DefaultsValue &value :
         {DefaultsValue{true}, DefaultsValue{false}, DefaultsValue{std::string("never")}}) {
        store.set(KEY, value);
        EXPECT_TRUE(access.hasAskedForAccess()) << value.description();
    }
    store.remove(KEY);
    EXPECT_FALSE(access.hasAskedForAccess());
}

} // namespace

class Permission : public testing::Test, protected AppleEventPermissionDelegate
{
protected:
    void permissionFinished() override
    {
        EXPECT_EQ(coordinator_.window(), nullptr) << "the window goes before the start goes on";
        ++finished_;
    }
    void terminate() override { ++terminated_; }

    QWidget &shown()
    {
        coordinator_.show();
        return *coordinator_.window();
    }
    static void press(QWidget &window, const char *text)
    {
        for (auto *button : window.findChildren<QAbstractButton *>()) {
            if (button->text() == QLatin1String(text))
                return button->click();
        }
        FAIL() << "no button " << text;
    }

    FakeDefaultsStore store_;
    AppleEventAccess access_{store_};
    FakeFileManager fileManager_;
    AppleScriptRunner scripts_{fileManager_};
    PlainWindowSystem windowSystem_;
    ManualTaskQueue background_;
    ManualTaskQueue main_;
    AppleEventPermissionCoordinator coordinator_{{.access = access_,
                                                  .appleScriptRunner = scripts_,
                                                  .background = background_,
                                                  .main = main_},
                                                 windowSystem_,
                                                 *this};
    int finished_ = 0;
    int terminated_ = 0;
};

TEST_F(Permission, isStoredThenAskedForAndOver)
{
    fileManager_.isWorking = false; // The outcome makes no difference.
    QWidget &window = shown();
    EXPECT_EQ(store_.boolean(KEY), std::nullopt);
    press(window, "Allow");
    EXPECT_EQ(store_.boolean(KEY), true);
    press(window, "Quit");
    EXPECT_EQ(terminated_, 1) << "nothing holds up whoever wants to leave";
    EXPECT_THAT(fileManager_.takeCalls(), IsEmpty()) << "not on the main thread";
    background_.runNext();
    EXPECT_THAT(fileManager_.takeCalls(), ElementsAre("probe"));
    EXPECT_EQ(finished_, 0);
    main_.runAll();
    EXPECT_EQ(finished_, 1) << "the answer and the end of the patience count once";
    EXPECT_TRUE(background_.isEmpty());
}

TEST_F(Permission, doesNotWaitForAFileManagerThatHangs)
{
    press(shown(), "Allow");
    main_.runAll();
    EXPECT_EQ(finished_, 1);
    background_.runAll();
    main_.runAll();
    EXPECT_EQ(finished_, 1);
}

TEST_F(Permission, saysThatTheAnswerCannotBeStoredAndThenGoesOn)
{
    store_.failWrites();
    QWidget &window = shown();
    const auto saysFault = [&] {
        return std::ranges::any_of(window.findChildren<QLabel *>(), [](const QLabel *label) {
            return label->isVisible() && label->text() == writeFault();
        });
    };
    EXPECT_FALSE(saysFault());
    press(window, "Allow");
    EXPECT_TRUE(saysFault());
    EXPECT_TRUE(background_.isEmpty());
    press(window, "Allow");
    background_.runAll();
    main_.runAll();
    EXPECT_EQ(finished_, 1);
}

TEST_F(Permission, hasNoWayOutButItsButtons)
{
    QWidget &window = shown();
    EXPECT_EQ(window.windowTitle(), u"Quillon – Permissions"_s);
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
    window.close();
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
    coordinator_.show();
    EXPECT_EQ(coordinator_.window(), &window) << "it is asked once";

    press(window, "Quit");
    EXPECT_EQ(terminated_, 1);
    EXPECT_EQ(store_.boolean(KEY), std::nullopt) << "so it is asked again";
    EXPECT_THAT(fileManager_.takeCalls(), IsEmpty());
}

TEST_F(Permission, takesReturnForTheButtonThatHasTheFocus)
{
    QWidget &window = shown();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    ASSERT_NE(window.focusWidget(), nullptr);
    QTest::keyClick(window.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(store_.boolean(KEY), true);
}

} // namespace quillon
