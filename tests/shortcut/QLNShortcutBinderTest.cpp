#include "shortcut/QLNShortcutBinder.h"

#include "prefs/PreferenceKeys.h"
#include "shortcut/QLNShortcutMonitor.h"
#include "tests/support/FakeDefaultsChanges.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/FakeHotKey.h"

#include <gmock/gmock.h>

namespace quillon {

using testing::Eq;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using Outcome = HotKey::Outcome;

namespace {

const KeyCombination CTRL_Z{.control = true, .key = "z"};
const KeyCombination F9{.key = "F9"};

} // namespace

class QLNShortcutBinderTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QObject::connect(&binder, &QLNShortcutBinder::pressed, &binder, [this] { ++presses; });
    }

    /// Changes the settings as an editor does; the binder learns of the change later.
    void write(const DefaultsValue &value) { defaults.set(PreferenceKeys::SHORTCUT, value); }
    void writeText(const std::string &text) { write({text}); }

    FakeDefaultsStore defaults;
    FakeDefaultsChanges changes;
    FakeHotKey keyboard;
    QLNShortcutMonitor monitor{defaults, changes};
    QLNShortcutBinder binder{monitor, keyboard};
    int presses = 0;
};

TEST_F(QLNShortcutBinderTest, bindsNothingUntilSomethingIsStored)
{
    binder.start();
    EXPECT_EQ(keyboard.grabs, 0);
    writeText("desktop");
    changes.tell();
    EXPECT_TRUE(monitor.shortcut()) << "the desktop's key is a shortcut, too";
    EXPECT_EQ(keyboard.grabs, 0);
    EXPECT_FALSE(binder.outcome());
}

TEST_F(QLNShortcutBinderTest, followsWhatIsStored)
{
    ASSERT_TRUE(monitor.store(QLNShortcut{.keys = CTRL_Z}));
    EXPECT_EQ(keyboard.grabs, 0) << "before the start";
    binder.start();
    EXPECT_TRUE(keyboard.press(CTRL_Z));

    writeText("F9");
    changes.tell();
    EXPECT_FALSE(keyboard.press(CTRL_Z));
    EXPECT_TRUE(keyboard.press(F9));
    EXPECT_EQ(presses, 2);
    changes.tell();
    EXPECT_EQ(keyboard.grabs, 2) << "nothing is bound anew for another setting";

    defaults.removeAll();
    changes.tell();
    EXPECT_FALSE(keyboard.press(F9));
}

TEST_F(QLNShortcutBinderTest, keepsTheFormerKeyWhenTheNewOneCannotBeStored)
{
    monitor.store(QLNShortcut{.keys = CTRL_Z});
    binder.start();
    defaults.failWrites();
    EXPECT_FALSE(monitor.store(QLNShortcut{.keys = F9}));
    EXPECT_TRUE(keyboard.press(CTRL_Z));
}

TEST_F(QLNShortcutBinderTest, complainsOnceOfAValueThatIsNoShortcut)
{
    binder.start();
    testing::internal::CaptureStderr();
    writeText("Strg+Z");
    changes.tell();
    changes.tell();
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                Eq("quillon: ShowQLNShortcut: \"Strg+Z\" is no shortcut; write one as "
                   "\"Ctrl+Alt+Space\"\n"));
    EXPECT_FALSE(monitor.shortcut());
}

TEST_F(QLNShortcutBinderTest, complainsOfAKeyThatIsTakenAndTakesItBackSilently)
{
    keyboard.taken = CTRL_Z;
    writeText("Ctrl+Z");
    changes.tell();
    testing::internal::CaptureStderr();
    binder.start();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Ctrl+Z is in use"));
    EXPECT_THAT(binder.outcome(), Optional(Outcome::inUse));

    testing::internal::CaptureStderr();
    binder.pause();
    binder.resume();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), IsEmpty()) << "nothing new";
    keyboard.answer(Outcome::grabbed);
    EXPECT_THAT(binder.outcome(), Optional(Outcome::grabbed));
    EXPECT_TRUE(keyboard.press(CTRL_Z));
}

TEST_F(QLNShortcutBinderTest, givesTheKeyBackWhileAnotherIsRecorded)
{
    writeText("Ctrl+Z");
    changes.tell();
    binder.start();
    binder.pause();
    binder.pause();
    EXPECT_FALSE(keyboard.grabbed());
    monitor.store(QLNShortcut{.keys = F9});
    binder.resume();
    EXPECT_FALSE(keyboard.grabbed()) << "one recorder is still at work";
    binder.resume();
    EXPECT_TRUE(keyboard.press(F9));
}

TEST_F(QLNShortcutBinderTest, waitsForADesktopThatAsksTheUser)
{
    keyboard.isAnswering = false;
    writeText("Ctrl+Z");
    changes.tell();
    binder.start();
    EXPECT_FALSE(binder.outcome());
    int changed = 0;
    QObject::connect(&binder, &QLNShortcutBinder::outcomeChanged, &binder, [&] { ++changed; });
    keyboard.answer(Outcome::grabbed);
    EXPECT_THAT(binder.outcome(), Optional(Outcome::grabbed));
    EXPECT_EQ(changed, 1);
    writeText("F9");
    changes.tell();
    EXPECT_FALSE(binder.outcome()) << "the former key's answer is not the new one's";
    EXPECT_EQ(changed, 2);
}

} // namespace quillon
