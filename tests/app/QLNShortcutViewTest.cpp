#include "app/widgets/QLNShortcutView.h"

#include "app/widgets/WriteFault.h"
#include "shortcut/QLNShortcutBinder.h"
#include "shortcut/QLNShortcutMonitor.h"
#include "tests/support/FakeDefaultsChanges.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/FakeHotKey.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

namespace quillon {

using testing::Optional;

namespace {

constexpr quint32 CODE_OF_Z = 52;
constexpr quint32 CODE_OF_CONTROL = 37;
const KeyCombination CTRL_ALT_SPACE{.control = true, .alt = true, .key = "space"};
const KeyCombination CTRL_Z{.control = true, .key = "z"};

} // namespace

class QLNShortcutViewTest : public testing::Test
{
protected:
    void SetUp() override
    {
        keyboard.keyNames = {{CODE_OF_Z, "z"}};
        monitor.store(QLNShortcut{.keys = CTRL_ALT_SPACE});
        binder.start();
        view.show();
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, quint32 code = 0)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, code, 0, 0);
        QApplication::sendEvent(button, &event);
    }

    FakeDefaultsStore defaults;
    FakeDefaultsChanges changes;
    FakeHotKey keyboard;
    QLNShortcutMonitor monitor{defaults, changes};
    QLNShortcutBinder binder{monitor, keyboard};
    QLNShortcutView view{monitor, binder, keyboard};
    QPushButton *button = view.findChild<QPushButton *>();
    QLabel *message = view.findChild<QLabel *>();
};

TEST_F(QLNShortcutViewTest, recordsTheKeyThatIsPressedWithItsModifiers)
{
    button->click();
    EXPECT_TRUE(view.isRecording());
    EXPECT_TRUE(message->text().startsWith(QStringLiteral("Escape keeps"))) << "how to get out";
    EXPECT_FALSE(keyboard.grabbed()) << "our own key is given back";
    press(Qt::Key_Control, Qt::ControlModifier, CODE_OF_CONTROL);
    EXPECT_TRUE(view.isRecording()) << "a modifier alone is not the end";
    press(Qt::Key_Z, Qt::ControlModifier, CODE_OF_Z);
    EXPECT_FALSE(view.isRecording());
    EXPECT_THAT(monitor.shortcut(), Optional(QLNShortcut{.keys = CTRL_Z}));
    EXPECT_THAT(keyboard.grabbed(), Optional(CTRL_Z));
    EXPECT_EQ(button->text(), QStringLiteral("Ctrl+Z"));
    EXPECT_FALSE(message->isVisible());
}

TEST_F(QLNShortcutViewTest, saysWhyAKeyCannotBeAndWaitsForAnother)
{
    keyboard.taken = CTRL_Z;
    view.startRecording();
    press(Qt::Key_Z, {}, CODE_OF_Z);
    EXPECT_TRUE(message->text().startsWith(QStringLiteral("Z needs Ctrl")));
    press(Qt::Key_Z, Qt::ControlModifier, CODE_OF_Z);
    EXPECT_EQ(message->text(), QStringLiteral("Ctrl+Z is in use by another program."));
    EXPECT_TRUE(view.isRecording());
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier, CODE_OF_Z);
    EXPECT_EQ(button->text(), QStringLiteral("Ctrl+Shift+Z"));
}

TEST_F(QLNShortcutViewTest, goesBackToTheFormerKeyWhenRecordingIsGivenUp)
{
    const std::vector<std::function<void()>> ways{
        [this] { press(Qt::Key_Escape); }, [this] { press(Qt::Key_Tab); },
        [this] { button->click(); }, [this] { view.hide(); }};
    for (const auto &giveUp : ways) {
        view.show();
        view.startRecording();
        EXPECT_FALSE(keyboard.grabbed());
        giveUp();
        EXPECT_FALSE(view.isRecording());
        EXPECT_THAT(keyboard.grabbed(), Optional(CTRL_ALT_SPACE));
        EXPECT_EQ(button->text(), QStringLiteral("Ctrl+Alt+Space"));
    }
}

TEST_F(QLNShortcutViewTest, clearsWithBackspace)
{
    view.startRecording();
    press(Qt::Key_Backspace);
    EXPECT_FALSE(defaults.value("ShowQLNShortcut"));
    EXPECT_FALSE(keyboard.grabbed());
    EXPECT_EQ(button->text(), QStringLiteral("Record Shortcut"));
}

TEST_F(QLNShortcutViewTest, showsWhatComesFromElsewhere)
{
    defaults.set("ShowQLNShortcut", {std::string("desktop")});
    changes.tell();
    EXPECT_EQ(button->text(), QStringLiteral("Bound by the desktop"));
    keyboard.taken = CTRL_Z;
    defaults.set("ShowQLNShortcut", {std::string("Ctrl+Z")});
    changes.tell();
    EXPECT_EQ(button->text(), QStringLiteral("Ctrl+Z"));
    EXPECT_TRUE(message->text().contains(QStringLiteral("in use")));
}

TEST_F(QLNShortcutViewTest, namesTheCommandToBindWhereNoKeyCanBeHad)
{
    keyboard.possible = false;
    button->click();
    EXPECT_FALSE(view.isRecording());
    EXPECT_TRUE(message->text().contains(QStringLiteral("quillon --toggle")));
}

TEST_F(QLNShortcutViewTest, keepsTheFormerKeyWhenTheDiskTakesNoOther)
{
    defaults.failWrites();
    view.startRecording();
    press(Qt::Key_Z, Qt::ControlModifier, CODE_OF_Z);
    EXPECT_THAT(keyboard.grabbed(), Optional(CTRL_ALT_SPACE));
    EXPECT_EQ(message->text(), writeFault());

    view.startRecording();
    press(Qt::Key_Backspace);
    EXPECT_THAT(keyboard.grabbed(), Optional(CTRL_ALT_SPACE));
    EXPECT_EQ(message->text(), writeFault());
}

TEST_F(QLNShortcutViewTest, tellsAScreenReaderWhatItIsAndHolds)
{
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Name),
              QStringLiteral("Shortcut that shows the panel: Ctrl+Alt+Space"));
    view.startRecording();
    press(Qt::Key_Z, {}, CODE_OF_Z);
    EXPECT_EQ(accessible->text(QAccessible::Description), message->text());
}

} // namespace quillon
