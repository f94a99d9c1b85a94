#include "app/panel/PanelKeyboard.h"

#include "app/panel/MenuButton.h"
#include "app/widgets/QuillonStyle.h"
#include "tests/app/SearchPanelFixture.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QMenu>
#include <QPushButton>

namespace quillon {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using namespace Qt::StringLiterals;

struct KeyRow
{
    const char *name;
    const char *query;
    std::vector<Qt::Key> keys;
    Qt::KeyboardModifiers modifiers;
    int selected;
    Texts used;
    Texts done;
    bool closed;
};

std::ostream &operator<<(std::ostream &out, const KeyRow &row)
{
    return out << row.name;
}

class SearchPanelKeys : public SearchPanel, public testing::WithParamInterface<KeyRow>
{};

TEST_P(SearchPanelKeys, selectAndOpen)
{
    const KeyRow &row = GetParam();
    type(row.query);
    answer();
    for (std::size_t i = 0; i < row.keys.size(); ++i)
        press(row.keys[i], i + 1 == row.keys.size() ? row.modifiers : Qt::NoModifier);
    EXPECT_EQ(selected(), row.selected);
    EXPECT_EQ(source_.used, row.used);
    EXPECT_EQ(done(), row.done);
    EXPECT_EQ(delegate_.asked, Texts(row.closed ? 1 : 0, "close"));
}

INSTANTIATE_TEST_SUITE_P(
    Keys, SearchPanelKeys,
    testing::Values(
        KeyRow{
            "returnOpensTheFirst", "ab", {Qt::Key_Return}, {}, 0, {"/ab/1"}, {"new /ab/1"}, true},
        KeyRow{"enterOnTheKeypad",
               "ab",
               {Qt::Key_Down, Qt::Key_Enter},
               Qt::KeypadModifier,
               1,
               {"/ab/2"},
               {"new /ab/2"},
               true},
        KeyRow{"superIsNotConsidered",
               "ab",
               {Qt::Key_Return},
               Qt::MetaModifier,
               0,
               {"/ab/1"},
               {"new /ab/1"},
               true},
        KeyRow{"controlShowsTheParent",
               "ab",
               {Qt::Key_Return},
               Qt::ControlModifier,
               0,
               {"/ab/1"},
               {"select /ab/1 in /ab"},
               true},
        KeyRow{"altCopies",
               "ab",
               {Qt::Key_Enter},
               Qt::KeypadModifier | Qt::AltModifier,
               0,
               {"/ab/1"},
               {"copied /ab/1"},
               true},
        KeyRow{"altAndShiftRunTheTerminal",
               "ab",
               {Qt::Key_Return},
               Qt::AltModifier | Qt::ShiftModifier,
               0,
               {"/ab/1"},
               {"ran open -a \"Terminal\" \"/ab/1\""},
               true},
        KeyRow{"unboundModifiersCountOnly",
               "ab",
               {Qt::Key_Return},
               Qt::ShiftModifier,
               0,
               {"/ab/1"},
               {},
               false},
        KeyRow{"allModifiersAreUnbound",
               "ab",
               {Qt::Key_Return},
               Qt::AltModifier | Qt::ShiftModifier | Qt::ControlModifier,
               0,
               {"/ab/1"},
               {},
               false},
        KeyRow{
            "tabOpens", "ab", {Qt::Key_Down, Qt::Key_Tab}, {}, 1, {"/ab/2"}, {"new /ab/2"}, true},
        KeyRow{"upStopsAtTheFirst", "ab", {Qt::Key_Up}, {}, 0, {}, {}, false},
        KeyRow{"downStopsAtTheLast",
               "ab",
               {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down},
               {},
               2,
               {},
               {},
               false},
        KeyRow{"pageDown", "many", {Qt::Key_PageDown}, {}, 8, {}, {}, false},
        KeyRow{"pagesEndAtTheLast",
               "many",
               {Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_PageDown},
               {},
               24,
               {},
               {},
               false},
        KeyRow{"pageUp",
               "many",
               {Qt::Key_PageDown, Qt::Key_Down, Qt::Key_PageUp},
               {},
               1,
               {},
               {},
               false},
        KeyRow{"endIsTheLastRow", "many", {Qt::Key_End}, {}, 24, {}, {}, false},
        KeyRow{"homeMovesTheCaretFirst", "ab", {Qt::Key_End, Qt::Key_Home}, {}, 2, {}, {}, false},
        KeyRow{"homeAtTheBeginningIsTheFirstRow",
               "ab",
               {Qt::Key_End, Qt::Key_Home, Qt::Key_Home},
               {},
               0,
               {},
               {},
               false},
        KeyRow{"arrowsWithModifiersAreNoCommands",
               "ab",
               {Qt::Key_Down},
               Qt::ShiftModifier,
               0,
               {},
               {},
               false},
        KeyRow{"arrowsWithSuperAre", "ab", {Qt::Key_Down}, Qt::MetaModifier, 1, {}, {}, false},
        KeyRow{"controlAndTabIsNoTab", "ab", {Qt::Key_Tab}, Qt::ControlModifier, 0, {}, {}, false},
        KeyRow{"nothingToOpen", "no such", {Qt::Key_Down, Qt::Key_Return}, {}, -1, {}, {}, false},
        KeyRow{"escapeCloses", "ab", {Qt::Key_Escape}, {}, 0, {}, {}, true}),
    [](const auto &test) { return std::string(test.param.name); });

struct CommandRow
{
    const char *name;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    Texts asked;
};

std::ostream &operator<<(std::ostream &out, const CommandRow &row)
{
    return out << row.name;
}

class SearchPanelCommands : public SearchPanel, public testing::WithParamInterface<CommandRow>
{};

TEST_P(SearchPanelCommands, holdForExactlyTheirKeys)
{
    const CommandRow &row = GetParam();
    panel();
    press(row.key, row.modifiers);
    EXPECT_EQ(delegate_.asked, row.asked);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, SearchPanelCommands,
    testing::Values(
        CommandRow{"preferences", Qt::Key_Comma, Qt::ControlModifier, {"preferences"}},
        CommandRow{"superIsNotConsidered",
                   Qt::Key_Comma,
                   Qt::ControlModifier | Qt::MetaModifier,
                   {"preferences"}},
        CommandRow{"commaAlone", Qt::Key_Comma, {}, {}},
        CommandRow{"withShift", Qt::Key_Comma, Qt::ControlModifier | Qt::ShiftModifier, {}},
        CommandRow{"quit", Qt::Key_Q, Qt::ControlModifier, {"terminate"}},
        CommandRow{
            "quitWithShift", Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier, {"terminate"}},
        CommandRow{"qAlone", Qt::Key_Q, {}, {}},
        CommandRow{"quitWithAlt", Qt::Key_Q, Qt::ControlModifier | Qt::AltModifier, {}}),
    [](const auto &test) { return std::string(test.param.name); });

TEST_F(SearchPanel, saysWhatTheKeysDo)
{
    panel();
    EXPECT_EQ(hints(), QStringList({u"Return: Open"_s, u"Ctrl Return: Show parent"_s,
                                    u"Alt Return: Copy path"_s, u"Alt Shift Return: Terminal"_s}));
    EXPECT_EQ(view_.footer().hints().back().toolTip, u"Open with the application “Terminal”"_s);

    const ActionShortcutFlags shift{.shift = true};
    EXPECT_TRUE(actionList_.saveActions(
        {{shift, ActionType::executeShellCommand, ActionTarget("/home/u/100% %1")},
         {shift, ActionType::showInFinder, ActionTarget::selectedRow},
         {{}, ActionType("Sing", false), ActionTarget::selectedRow}}));
    panel().viewWillAppear();
    EXPECT_EQ(hints(), QStringList({u"Shift Return: 100% %1"_s, u"Return: Nothing"_s}))
        << "the second action with the same keys is never reached";
    EXPECT_EQ(view_.footer().hints().front().toolTip, u"Run /home/u/100% %1"_s);
    type("no such");
    answer();
    EXPECT_EQ(hints(), QStringList()) << "no row to work on";
}

TEST_F(SearchPanel, saysThatAnItemOfTheFrontWindowIsOpenedOrSelectedByAllKeys)
{
    source_.answers["ab"] = {"able", "/ab/1"};
    type("ab");
    answer();
    EXPECT_EQ(hints(), QStringList({u"Return: Open"_s}));
    press(Qt::Key_Down);
    EXPECT_EQ(hints().size(), 4);
    preferences_.quickSearchBehavior.select(Preferences::QuickSearchBehavior::select);
    press(Qt::Key_Up);
    EXPECT_EQ(hints(), QStringList({u"Return: Select"_s}));
}

TEST_F(SearchPanel, opensTheRowOfTheDigitThatIsPressedWithControl)
{
    type("ab");
    answer();
    press(Qt::Key_9, Qt::ControlModifier);
    press(Qt::Key_2, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(done().empty()) << "there is no ninth row, and Alt is another key";
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(done(), Texts({"new /ab/2"}));
}

TEST_F(SearchPanel, marksTheHintOfTheKeysHeldInThePanel)
{
    appear();
    const auto footer = [this] { return view_.footer().grab().toImage(); };
    const QImage calm = footer();
    QTest::keyRelease(&field(), Qt::Key_Control, Qt::AltModifier);
    EXPECT_EQ(footer(), calm) << "held since before the panel came";
    QTest::keyRelease(&field(), Qt::Key_Alt);

    QTest::keyPress(&field(), Qt::Key_Shift, Qt::ShiftModifier);
    EXPECT_EQ(footer(), calm) << "nothing is bound to it";
    QTest::keyPress(&field(), Qt::Key_Alt, Qt::ShiftModifier | Qt::AltModifier);
    const QImage marked = footer();
    EXPECT_NE(marked, calm);
    QTest::keyRelease(&field(), Qt::Key_Shift, Qt::AltModifier);
    EXPECT_NE(footer(), marked);
    panel().viewDidDisappear();
    EXPECT_EQ(footer(), calm);
}

TEST_F(SearchPanel, leavesTheKeysToAnInputMethodThatComposes)
{
    type("ab");
    answer();
    QInputMethodEvent composing(u"か"_s, {});
    QApplication::sendEvent(&field(), &composing);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape})
        press(key);
    EXPECT_EQ(selected(), 0);
    EXPECT_THAT(source_.used, IsEmpty());
    EXPECT_THAT(delegate_.asked, IsEmpty());
}

TEST_F(SearchPanel, searchesForAComposedTextOnceItIsSettled)
{
    type("ab");
    answer();
    // The composed text replaces the selected text, which is gone from here on.
    field().selectAll();
    QInputMethodEvent composing(u"か"_s, {});
    QApplication::sendEvent(&field(), &composing);
    EXPECT_TRUE(field().text().isEmpty());
    QInputMethodEvent settled;
    settled.setCommitString(u"かな"_s);
    QApplication::sendEvent(&field(), &settled);
    EXPECT_THAT(rows(), ElementsAre("/ab/1", "/ab/2", "/ab/3"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return background_.size() > 0; }));
    source_.answers["かな"] = {"/かな"};
    answer();
    EXPECT_THAT(rows(), ElementsAre("/かな"));

    field().selectAll();
    QApplication::sendEvent(&field(), &composing);
    QInputMethodEvent givenUp;
    QApplication::sendEvent(&field(), &givenUp);
    EXPECT_TRUE(QTest::qWaitFor([this] { return rows() == source_.mostUsed; }))
        << "what the composition replaced is gone";
}

TEST_F(SearchPanel, reachesItsButtonsByTheKeyboard)
{
    delegate_.hasUpdate = true;
    appear();
    press(Qt::Key_F10);
    EXPECT_TRUE(view_.updateButton().hasFocus());
    QTest::keyClick(&view_.updateButton(), Qt::Key_Return);
    EXPECT_THAT(delegate_.takeAsked(), ElementsAre("updates"));
    QTest::keyClick(&view_.updateButton(), Qt::Key_Right);
    EXPECT_TRUE(view_.menuButton().hasFocus());
    QTest::keyClick(&view_.menuButton(), Qt::Key_Left);
    QTest::keyClick(&view_.updateButton(), Qt::Key_Escape);
    EXPECT_TRUE(field().hasFocus());
    EXPECT_THAT(delegate_.asked, IsEmpty());

    press(Qt::Key_F10);
    QTest::keyClick(&view_.updateButton(), 'x');
    EXPECT_TRUE(field().hasFocus());
    EXPECT_EQ(field().text(), u"x"_s);
}

} // namespace

} // namespace quillon
