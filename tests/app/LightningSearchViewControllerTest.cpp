#include "app/panel/LightningSearchViewController.h"

#include "actions/ActionModelFinder.h"
#include "actions/ActionRunner.h"
#include "app/panel/IconSource.h"
#include "app/panel/PanelFooter.h"
#include "app/panel/PanelMessage.h"
#include "app/panel/SearchIndicator.h"
#include "app/panel/SearchPanelView.h"
#include "prefs/Preferences.h"
#include "tests/support/FakeActionServices.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/ManualTaskQueue.h"

#include <QLineEdit>
#include <QListView>
#include <QTest>

#include <gmock/gmock.h>

#include <functional>
#include <map>

namespace quillon {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Texts = std::vector<std::string>;

/// Answers queries from a table.
class FakePanelSource : public PanelSource
{
public:
    std::map<std::string, Texts> answers;
    Texts mostUsed;
    State current;
    Texts used;
    int homeFolderAdded = 0;
    bool isFileManagerInFront = false;
    int refreshes = 0;
    /// Ends the fetch of the front window.
    std::function<void()> fetched;

    std::vector<SearchBaseResultRef> search(const std::string &query) const override
    {
        const auto found = answers.find(query);
        return results(found == answers.end() ? Texts{} : found->second);
    }
    std::vector<SearchBaseResultRef> mostAccessedResults() const override
    {
        return results(mostUsed);
    }
    void recordUse(const SearchBaseResultRef &result) override { used.push_back(result->path()); }
    State state() const override { return current; }
    bool isFrontWindowSearched() const override { return isFileManagerInFront; }
    void refreshFrontWindow(std::function<void()> completion) override
    {
        ++refreshes;
        fetched = std::move(completion);
    }
    void forgetFrontWindow() override { fetched = nullptr; }
    void addHomeFolder() override { ++homeFolderAdded; }

private:
    static std::vector<SearchBaseResultRef> results(const Texts &texts)
    {
        std::vector<SearchBaseResultRef> rows;
        for (const std::string &text : texts)
            rows.push_back(std::make_shared<SearchBaseResult>(text, text, std::vector<TextRange>{},
                                                              SearchBaseResultType::standard));
        return rows;
    }
};

class FakeDelegate : public SearchPanelDelegate
{
public:
    int closed = 0;
    int terminated = 0;
    void closeSearchWindow(Closing) override { ++closed; }
    void openPreferences() override {}
    void sendFeedback() override {}
    void checkForUpdates() override {}
    bool hasUninstalledUpdate() const override { return false; }
    void terminate() override { ++terminated; }
};

} // namespace

class SearchPanel : public testing::Test
{
protected:
    SearchPanel()
    {
        source_.current.count = 7;
        source_.mostUsed = {"/most", "/used"};
        source_.answers = {{"ab", {"/ab/1", "/ab/2", "/ab/3"}}, {"abc", {"/abc"}}};
        for (int i = 0; i < 25; ++i)
            source_.answers["many"].push_back("/many/" + std::to_string(i));
    }

    LightningSearchViewController &panel()
    {
        if (!panel_)
            panel_.emplace(LightningSearchViewController::Actions{actionList_, runner_}, source_,
                           view_, LightningSearchViewController::Queues{background_, main_},
                           delegate_);
        return *panel_;
    }

    QLineEdit &field() { return view_.searchTextField(); }
    /// Types the text in place of the one that is there and waits until typing has settled.
    void type(const char *text)
    {
        panel();
        const std::size_t before = background_.size();
        field().selectAll();
        QTest::keyClicks(&field(), QLatin1String(text));
        ASSERT_TRUE(QTest::qWaitFor([&] { return background_.size() > before; }));
    }
    void answer()
    {
        background_.runAll();
        main_.runAll();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&field(), key, modifiers);
        actions_.runAll();
    }
    Texts rows()
    {
        Texts texts;
        for (const auto &result : view_.searchResults().results())
            texts.push_back(result->text());
        return texts;
    }
    int selected() { return view_.tableView().currentIndex().row(); }

    FakePanelSource source_;
    /// What the actions have done.
    Texts done()
    {
        Texts done = fakes_.fileManager.takeCalls();
        if (!fakes_.clipboard.text.empty())
            done.push_back("copied " + fakes_.clipboard.text);
        for (const auto &command : fakes_.processRunner.commands)
            done.push_back("ran " + command.arguments.back());
        return done;
    }

    FakeActionServices fakes_;
    FakeDefaultsStore store_;
    Preferences preferences_{store_};
    AppleScriptRunner scripts_{fakes_.fileManager};
    ActionModelFinder actionList_{store_};
    FakeDelegate delegate_;
    ManualTaskQueue background_;
    ManualTaskQueue main_;
    ManualTaskQueue actions_;
    ActionRunner runner_{fakes_.services(), preferences_, scripts_, actions_, "/programs"};
    IconSource icons_{fakes_.workspace, actions_, actions_};
    SearchPanelView view_{icons_};
    std::optional<LightningSearchViewController> panel_;
};

TEST_F(SearchPanel, searchesOnceWhenTypingSettles)
{
    type("abc");
    background_.runNext();
    EXPECT_TRUE(background_.isEmpty()) << "\"ab\" was passed on the way";
    main_.runAll();
    EXPECT_THAT(rows(), ElementsAre("/abc"));
}

TEST_F(SearchPanel, showsTheMostUsedFoldersForTextsTooShortToSearch)
{
    panel();
    EXPECT_THAT(rows(), ElementsAre("/most", "/used"));
    type("ab");
    answer();
    QTest::keyClick(&field(), Qt::Key_Backspace);
    ASSERT_TRUE(QTest::qWaitFor([this] { return rows().front() == "/most"; }));
    EXPECT_TRUE(background_.isEmpty()) << "one character is never searched";
    EXPECT_EQ(selected(), 0);
}

TEST_F(SearchPanel, dropsAnAnswerToAnOlderText)
{
    type("ab");
    background_.runAll();
    type("abc");
    main_.runAll();
    EXPECT_THAT(rows(), ElementsAre("/most", "/used"));
    answer();
    EXPECT_THAT(rows(), ElementsAre("/abc"));
}

struct KeyRow
{
    const char *name;
    const char *query;
    std::vector<Qt::Key> keys;
    Qt::KeyboardModifiers modifiers;
    int selected;
    Texts used;
    Texts done;
    int closed;
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
    EXPECT_EQ(delegate_.closed, row.closed);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, SearchPanelKeys,
    testing::Values(
        KeyRow{"returnOpensTheFirst", "ab", {Qt::Key_Return}, {}, 0, {"/ab/1"}, {"new /ab/1"}, 1},
        KeyRow{"enterOnTheKeypad",
               "ab",
               {Qt::Key_Down, Qt::Key_Enter},
               Qt::KeypadModifier,
               1,
               {"/ab/2"},
               {"new /ab/2"},
               1},
        KeyRow{"superIsNotConsidered",
               "ab",
               {Qt::Key_Return},
               Qt::MetaModifier,
               0,
               {"/ab/1"},
               {"new /ab/1"},
               1},
        KeyRow{"controlShowsTheParent",
               "ab",
               {Qt::Key_Return},
               Qt::ControlModifier,
               0,
               {"/ab/1"},
               {"select /ab/1 in /ab"},
               1},
        KeyRow{"altCopies",
               "ab",
               {Qt::Key_Enter},
               Qt::KeypadModifier | Qt::AltModifier,
               0,
               {"/ab/1"},
               {"copied /ab/1"},
               1},
        KeyRow{"altAndShiftRunTheTerminal",
               "ab",
               {Qt::Key_Return},
               Qt::AltModifier | Qt::ShiftModifier,
               0,
               {"/ab/1"},
               {"ran open -a \"Terminal\" \"/ab/1\""},
               1},
        KeyRow{"unboundModifiersCountOnly",
               "ab",
               {Qt::Key_Return},
               Qt::ShiftModifier,
               0,
               {"/ab/1"},
               {},
               0},
        KeyRow{"allModifiersAreUnbound",
               "ab",
               {Qt::Key_Return},
               Qt::AltModifier | Qt::ShiftModifier | Qt::ControlModifier,
               0,
               {"/ab/1"},
               {},
               0},
        KeyRow{"tabOpens", "ab", {Qt::Key_Down, Qt::Key_Tab}, {}, 1, {"/ab/2"}, {"new /ab/2"}, 1},
        KeyRow{"upStopsAtTheFirst", "ab", {Qt::Key_Up}, {}, 0, {}, {}, 0},
        KeyRow{"downStopsAtTheLast",
               "ab",
               {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down},
               {},
               2,
               {},
               {},
               0},
        KeyRow{"pageDown", "many", {Qt::Key_PageDown}, {}, 8, {}, {}, 0},
        KeyRow{"pagesEndAtTheLast",
               "many",
               {Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_PageDown},
               {},
               24,
               {},
               {},
               0},
        KeyRow{
            "pageUp", "many", {Qt::Key_PageDown, Qt::Key_Down, Qt::Key_PageUp}, {}, 1, {}, {}, 0},
        KeyRow{"nothingToOpen", "no such", {Qt::Key_Down, Qt::Key_Return}, {}, -1, {}, {}, 0},
        KeyRow{"escapeCloses", "ab", {Qt::Key_Escape}, {}, 0, {}, {}, 1}),
    [](const auto &test) { return std::string(test.param.name); });

TEST_F(SearchPanel, saysWhatTheKeysDo)
{
    const auto hints = [this] {
        QStringList texts;
        for (const PanelFooter::Hint &hint : view_.footer().hints())
            texts << hint.key + u": "_qs + hint.meaning;
        return texts;
    };
    panel();
    EXPECT_EQ(hints(),
              QStringList({u"Return: Open"_qs, u"Ctrl Return: Show parent"_qs,
                           u"Alt Return: Copy path"_qs, u"Alt Shift Return: Terminal"_qs}));
    EXPECT_EQ(view_.footer().hints().back().toolTip, u"Open with the application “Terminal”"_qs);

    const ActionShortcutFlags shift{.shift = true};
    EXPECT_TRUE(actionList_.saveActions(
        {{shift, ActionType::executeShellCommand, ActionTarget("/home/u/100% %1")},
         {shift, ActionType::showInFinder, ActionTarget::selectedRow},
         {{}, ActionType("Sing", false), ActionTarget::selectedRow}}));
    panel().viewWillAppear();
    EXPECT_EQ(hints(), QStringList({u"Shift Return: 100% %1"_qs, u"Return: Nothing"_qs}))
        << "the second action with the same keys is never reached";
    EXPECT_EQ(view_.footer().hints().front().toolTip, u"Run /home/u/100% %1"_qs);
    type("no such");
    answer();
    EXPECT_EQ(hints(), QStringList()) << "no row to work on";
}

TEST_F(SearchPanel, quitsOnControlQAndTypesQ)
{
    type("qq");
    EXPECT_EQ(delegate_.terminated, 0);
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(delegate_.terminated, 1);
    EXPECT_EQ(field().text(), u"qq"_qs);
}

TEST_F(SearchPanel, returnWaitsForTheAnswerToTheTypedText)
{
    type("ab");
    answer();
    QTest::keyClicks(&field(), u"c"_qs);
    press(Qt::Key_Return);
    EXPECT_THAT(source_.used, IsEmpty()) << "the rows are still those of \"ab\"";
    answer();
    actions_.runAll();
    EXPECT_THAT(done(), ElementsAre("new /abc"));
    EXPECT_EQ(delegate_.closed, 1);
}

TEST_F(SearchPanel, forgetsAnEarlyReturnWhenTypingGoesOn)
{
    type("ab");
    press(Qt::Key_Return);
    type("abc");
    answer();
    EXPECT_THAT(rows(), ElementsAre("/abc"));
    EXPECT_THAT(source_.used, IsEmpty());

    type("ab");
    press(Qt::Key_Return);
    panel().viewDidDisappear();
    answer();
    EXPECT_THAT(source_.used, IsEmpty()) << "hidden, the panel opens nothing";
}

TEST_F(SearchPanel, aClickOpensTheRow)
{
    type("ab");
    answer();
    view_.show();
    QListView &table = view_.tableView();
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                      table.visualRect(table.model()->index(2, 0)).center());
    EXPECT_THAT(source_.used, ElementsAre("/ab/3"));
    EXPECT_TRUE(view_.isAncestorOf(&field()));
}

TEST_F(SearchPanel, spinsOnlyForSlowSearches)
{
    type("ab");
    EXPECT_FALSE(view_.activityIndicator().isSpinning());
    ASSERT_TRUE(QTest::qWaitFor([this] { return view_.activityIndicator().isSpinning(); }));
    answer();
    EXPECT_FALSE(view_.activityIndicator().isSpinning());
}

TEST_F(SearchPanel, searchesAgainOnceTheFrontWindowIsKnown)
{
    type("ab");
    answer();
    panel().viewWillAppear();
    EXPECT_EQ(source_.refreshes, 0) << "no file manager is in front";
    EXPECT_FALSE(view_.activityIndicator().isSpinning());

    source_.isFileManagerInFront = true;
    panel().viewDidDisappear();
    panel().viewWillAppear();
    EXPECT_TRUE(view_.activityIndicator().isSpinning());
    answer();
    EXPECT_TRUE(view_.activityIndicator().isSpinning()) << "the window is still waited for";
    EXPECT_THAT(rows(), ElementsAre("/ab/1", "/ab/2", "/ab/3"));

    source_.answers["ab"].insert(source_.answers["ab"].begin(), "able");
    source_.fetched();
    EXPECT_FALSE(view_.activityIndicator().isSpinning());
    answer();
    EXPECT_THAT(rows(), ElementsAre("able", "/ab/1", "/ab/2", "/ab/3"));
    EXPECT_EQ(selected(), 0);

    panel().viewWillAppear();
    panel().viewDidDisappear();
    EXPECT_FALSE(source_.fetched);
    EXPECT_FALSE(view_.activityIndicator().isSpinning());
}

TEST_F(SearchPanel, dropsAnAnswerThatANewerSearchForTheSameTextOvertook)
{
    source_.isFileManagerInFront = true;
    type("ab");
    background_.runNext();
    const auto early = [this] { main_.runNext(); };
    panel().viewWillAppear();
    source_.answers["ab"] = {"able", "/ab/1"};
    source_.fetched();
    early();
    EXPECT_THAT(rows(), ElementsAre("/most", "/used")) << "a newer answer is on its way";
    answer();
    EXPECT_THAT(rows(), ElementsAre("able", "/ab/1"));
}

TEST_F(SearchPanel, keepsTheRowsThatTheUserIsChoosingFromWhenTheIndexChanges)
{
    type("ab");
    answer();
    source_.answers["ab"].insert(source_.answers["ab"].begin(), "/ab/0");
    press(Qt::Key_Down);
    panel().indexChanged();
    answer();
    EXPECT_THAT(rows(), ElementsAre("/ab/1", "/ab/2", "/ab/3"));
    EXPECT_EQ(selected(), 1);

    panel().viewWillAppear();
    answer();
    EXPECT_THAT(rows(), ElementsAre("/ab/0", "/ab/1", "/ab/2", "/ab/3"));
    EXPECT_EQ(selected(), 0);
}

TEST_F(SearchPanel, saysWhyThereAreNoRows)
{
    source_.mostUsed.clear();
    source_.current = {.count = 12, .isBuilding = true, .hasLocations = true};
    panel();
    const PanelMessage &message = view_.message();
    EXPECT_EQ(message.title(), u"Indexing your folders…"_qs);
    EXPECT_TRUE(message.sentence().startsWith(u"12 folders"_qs));

    source_.current.isBuilding = false;
    panel().indexChanged();
    EXPECT_EQ(message.title(), u"Type a part of a folder’s name"_qs);
    type("qwzx");
    answer();
    EXPECT_EQ(message.title(), u"No folder matches “qwzx”"_qs);
    EXPECT_FALSE(message.isHidden());

    type("ab");
    answer();
    EXPECT_TRUE(message.isHidden());

    source_.current = {.count = 0, .isBuilding = false, .hasLocations = false};
    panel().indexChanged();
    press(Qt::Key_Return);
    EXPECT_EQ(source_.homeFolderAdded, 1);
}

} // namespace quillon
