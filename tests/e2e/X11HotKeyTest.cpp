#include "platform/linux/hotkey/X11HotKey.h"

#include "app/widgets/QLNShortcutView.h"
#include "platform/linux/hotkey/SessionHotKey.h"
#include "shortcut/QLNShortcutBinder.h"
#include "shortcut/QLNShortcutMonitor.h"
#include "tests/support/FakeDefaultsChanges.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/Needs.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

#include <memory>

// These tests press real keys on a real display. They need Xvfb, a window manager, xdotool and
// setxkbmap.

namespace quillon {

using testing::ElementsAre;
using testing::Eq;
using Outcome = HotKey::Outcome;

namespace {

constexpr int PATIENCE = 20000; // milliseconds

const KeyCombination CTRL_ALT_SPACE{.control = true, .alt = true, .key = "space"};
const KeyCombination CTRL_ALT_Z{.control = true, .alt = true, .key = "z"};
const KeyCombination MARK{.key = "F9"};

xcb_connection_t *connection()
{
    return qApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

void run(const QString &program, const QStringList &arguments)
{
    ASSERT_EQ(QProcess::execute(program, arguments), 0) << program.toStdString();
}

void xdotool(const QStringList &arguments)
{
    run(QStringLiteral("xdotool"), arguments);
}

void press(const char *keys)
{
    xdotool({QStringLiteral("key"), QString::fromLatin1(keys)});
}

void useLayout(const char *layout)
{
    run(QStringLiteral("setxkbmap"), {QString::fromLatin1(layout)});
}

/// To the display, this is a second program that grabs keys.
class OtherClient
{
public:
    OtherClient() : x_(xcb_connect(nullptr, nullptr)) {}
    ~OtherClient() { xcb_disconnect(x_); }
    OtherClient(const OtherClient &) = delete;
    OtherClient &operator=(const OtherClient &) = delete;

    /// Grabs one key code, in one state of the lock keys only.
    void grab(const KeyGrab &grab)
    {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x_)).data->root;
        const auto cookie = xcb_grab_key_checked(x_, 1, root, grab.modifiers, grab.keyCode,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        EXPECT_EQ(xcb_request_check(x_, cookie), nullptr) << "the key was taken already";
    }

private:
    xcb_connection_t *x_;
};

/// Counts the presses that the display sends, including the repeated ones of a key that is held.
class RawPresses : public QAbstractNativeEventFilter
{
public:
    RawPresses() { qApp->installNativeEventFilter(this); }

    bool nativeEventFilter(const QByteArray &, void *message, qintptr *) override
    {
        const auto *event = static_cast<const xcb_generic_event_t *>(message);
        count += event->response_type == XCB_KEY_PRESS ? 1 : 0;
        return false;
    }

    int count = 0;
};

} // namespace

class X11HotKeyTest : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char *tool : {"xdotool", "setxkbmap", "xset"})
            QUILLON_NEEDS_TOOL(tool);
        useLayout("us");
        // A second hot key, which does not take part in the test, counts the marks.
        marks.onPressed([this] { ++markCount; });
        marks.grab(MARK, [](Outcome outcome) { ASSERT_EQ(outcome, Outcome::grabbed); });
        hotKey.onPressed([this] { ++presses; });
    }
    void TearDown() override { useLayout("us"); }

    Outcome grab(const KeyCombination &keys)
    {
        hotKey.grab(keys, [this](Outcome outcome) { told.push_back(outcome); });
        return told.back();
    }

    /// Returns how often the key counted since the last call. Keys come in order, so once a later
    /// one has come the earlier ones have been seen.
    int count()
    {
        const int before = markCount;
        press("F9");
        EXPECT_TRUE(QTest::qWaitFor([&] { return markCount > before; }, PATIENCE));
        return std::exchange(presses, 0);
    }

    X11HotKey marks{connection()};
    X11HotKey hotKey{connection(), std::chrono::milliseconds(200)};
    std::vector<Outcome> told;
    int presses = 0;
    int markCount = 0;
};

TEST_F(X11HotKeyTest, countsEachPressOfTheCombinationAndNoOther)
{
    ASSERT_EQ(grab(CTRL_ALT_SPACE), Outcome::grabbed);
    press("ctrl+alt+space");
    EXPECT_EQ(count(), 1);
    for (int i = 0; i < 5; ++i)
        press("ctrl+alt+space");
    EXPECT_EQ(count(), 5);
    for (const char *other :
         {"ctrl+space", "alt+space", "ctrl+alt+shift+space", "ctrl+alt+super+space", "ctrl+alt+z"})
        press(other);
    EXPECT_EQ(count(), 0);
    hotKey.release();
    press("ctrl+alt+space");
    EXPECT_EQ(count(), 0) << "given back";
}

TEST_F(X11HotKeyTest, countsUnderEveryStateOfTheLockKeys)
{
    ASSERT_EQ(grab(CTRL_ALT_SPACE), Outcome::grabbed);
    for (const char *lock : {"Num_Lock", "Caps_Lock", "Num_Lock", "Caps_Lock"}) {
        press(lock);
        press("ctrl+alt+space");
        EXPECT_EQ(count(), 1) << "after " << lock;
    }
}

TEST_F(X11HotKeyTest, countsAKeyThatIsHeldOnce)
{
    // A held key now repeats often in a short time.
    run(QStringLiteral("xset"),
        {QStringLiteral("r"), QStringLiteral("rate"), QStringLiteral("100"), QStringLiteral("50")});
    ASSERT_EQ(grab(CTRL_ALT_SPACE), Outcome::grabbed);
    xdotool({QStringLiteral("keydown"), QStringLiteral("ctrl+alt+space")});
    const RawPresses held;
    EXPECT_TRUE(QTest::qWaitFor([&held] { return held.count > 5; }, PATIENCE)) << "it repeats";
    xdotool({QStringLiteral("keyup"), QStringLiteral("ctrl+alt+space")});
    EXPECT_EQ(count(), 1);
    press("ctrl+alt+space");
    EXPECT_EQ(count(), 1);
}

TEST_F(X11HotKeyTest, takesSuperFunctionKeysAndShiftedCharacters)
{
    struct
    {
        KeyCombination keys;
        const char *pressed;
    } const rows[] = {{{.super = true, .key = "space"}, "super+space"},
                      {{.key = "f12"}, "F12"},
                      {{.shift = true, .super = true, .key = "1"}, "shift+super+1"},
                      {{.control = true, .key = "?"}, "ctrl+shift+slash"},
                      {{.control = true, .key = ","}, "ctrl+comma"}};
    for (const auto &row : rows) {
        ASSERT_EQ(grab(row.keys), Outcome::grabbed) << row.pressed;
        press(row.pressed);
        EXPECT_EQ(count(), 1) << row.pressed;
    }
}

TEST_F(X11HotKeyTest, tellsAKeyThatAnotherProgramHasAndKeepsNoPartOfIt)
{
    const auto grabs = X11Keyboard(connection()).grabsFor(CTRL_ALT_SPACE);
    ASSERT_EQ(grabs.size(), 4U);
    {
        OtherClient other;
        other.grab(grabs[2]);
        EXPECT_EQ(grab(CTRL_ALT_SPACE), Outcome::inUse);
        // The undone grabs are free again.
        for (const std::size_t index : {0U, 1U, 3U})
            other.grab(grabs[index]);
    }
    ASSERT_TRUE(QTest::qWaitFor([this] { return told.back() == Outcome::grabbed; }, PATIENCE))
        << "let go, it is taken without being asked for again";
    EXPECT_EQ(told.size(), 2U);
    press("ctrl+alt+space");
    EXPECT_EQ(count(), 1);
}

TEST_F(X11HotKeyTest, tellsAKeyThatIsNotThere)
{
    EXPECT_EQ(grab({.control = true, .key = "no such name"}), Outcome::noSuchKey);
    EXPECT_EQ(grab({.control = true, .key = "ß"}), Outcome::noSuchKey);
    useLayout("de");
    ASSERT_TRUE(QTest::qWaitFor([this] { return told.back() == Outcome::grabbed; }, PATIENCE));
    useLayout("us");
    ASSERT_TRUE(QTest::qWaitFor([this] { return told.back() == Outcome::noSuchKey; }, PATIENCE));
}

TEST_F(X11HotKeyTest, goesWithTheLetterWhenTheLayoutChanges)
{
    ASSERT_EQ(grab(CTRL_ALT_Z), Outcome::grabbed);
    const auto former = X11Keyboard(connection()).grabsFor(CTRL_ALT_Z);
    useLayout("de");
    const auto moved = X11Keyboard(connection()).grabsFor(CTRL_ALT_Z);
    ASSERT_NE(former[0].keyCode, moved[0].keyCode);
    const auto counts = [this](const KeyGrab &grab) {
        const QString code = QString::number(grab.keyCode);
        xdotool({QStringLiteral("keydown"), QStringLiteral("ctrl+alt"), QStringLiteral("key"), code,
                 QStringLiteral("keyup"), QStringLiteral("ctrl+alt")});
        return count() == 1;
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return counts(moved[0]); }, PATIENCE));
    EXPECT_FALSE(counts(former[0]));
    EXPECT_THAT(told, ElementsAre(Outcome::grabbed)) << "nothing new";

    // The key counts, whichever of the layouts is in force.
    useLayout("us,ru");
    ASSERT_TRUE(QTest::qWaitFor([&] { return counts(former[0]); }, PATIENCE));
    press("ISO_Next_Group");
    EXPECT_TRUE(counts(former[0]));
}

TEST_F(X11HotKeyTest, namesKeysByWhatTheyTypeAlone)
{
    const X11Keyboard keyboard(connection());
    for (const char *key : {"z", ",", "1", "space", "F5", "Return", "KP_Add", "Prior"}) {
        const auto grabs = keyboard.grabsFor({.key = key});
        ASSERT_FALSE(grabs.empty()) << key;
        EXPECT_EQ(hotKey.keyName(grabs[0].keyCode, 0), key);
    }
    for (const char *modifier : {"Control_L", "Shift_R", "Super_L", "Num_Lock", "Caps_Lock"})
        EXPECT_EQ(hotKey.keyName(keyboard.grabsFor({.key = modifier})[0].keyCode, 0), "")
            << modifier;
}

TEST(SessionHotKey, isAGrabOnX11)
{
    EXPECT_NE(dynamic_cast<X11HotKey *>(makeSessionHotKey().get()), nullptr);
}

class RecorderTest : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char *tool : {"xdotool", "setxkbmap", "xset"})
            QUILLON_NEEDS_TOOL(tool);
        QObject::connect(&binder, &QLNShortcutBinder::pressed, &binder, [this] { ++presses; });
        monitor.store(QLNShortcut{.keys = CTRL_ALT_SPACE});
        binder.start();
        view.show();
        view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view, PATIENCE));
        view.startRecording();
    }

    bool isShown(const char *text)
    {
        return QTest::qWaitFor(
            [&] { return view.findChild<QPushButton *>()->text() == QString::fromUtf8(text); },
            PATIENCE);
    }

    FakeDefaultsStore defaults;
    FakeDefaultsChanges changes;
    std::unique_ptr<HotKey> hotKey = makeSessionHotKey();
    QLNShortcutMonitor monitor{defaults, changes};
    QLNShortcutBinder binder{monitor, *hotKey};
    QLNShortcutView view{monitor, binder, *hotKey};
    int presses = 0;
};

TEST_F(RecorderTest, recordsItsOwnKeyAndThoseOfTheWindowManager)
{
    press("ctrl+alt+space");
    ASSERT_TRUE(isShown("Ctrl+Alt+Space"));
    EXPECT_FALSE(view.isRecording());
    EXPECT_EQ(presses, 0);
    press("ctrl+alt+space");
    ASSERT_TRUE(QTest::qWaitFor([this] { return presses == 1; }, PATIENCE)) << "bound again";

    // The window manager has this key: the press arrives here, but the key cannot be had.
    view.startRecording();
    press("alt+F4");
    auto *message = view.findChild<QLabel *>();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return message->text().contains(QStringLiteral("Alt+F4 is in use")); }, PATIENCE));
    EXPECT_TRUE(view.isRecording()) << "another may be pressed";
    press("super+shift+1");
    ASSERT_TRUE(isShown("Shift+Super+1"));
    EXPECT_THAT(defaults.value("ShowQLNShortcut")->description(),
                Eq(R"({"key":"1","modifiers":["Shift","Super"]})"));
}

TEST_F(RecorderTest, goesOnWithTheFormerKeyAfterEscape)
{
    press("Escape");
    ASSERT_TRUE(isShown("Ctrl+Alt+Space"));
    press("ctrl+alt+space");
    EXPECT_TRUE(QTest::qWaitFor([this] { return presses == 1; }, PATIENCE));
}

} // namespace quillon
