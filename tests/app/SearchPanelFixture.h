#pragma once

#include "actions/ActionModelFinder.h"
#include "actions/ActionRunner.h"
#include "app/panel/IconSource.h"
#include "app/panel/LightningSearchViewController.h"
#include "app/panel/PanelFooter.h"
#include "app/panel/SearchPanelView.h"
#include "app/panel/SearchResultsTable.h"
#include "base/PathText.h"
#include "prefs/Preferences.h"
#include "tests/support/FakeActionServices.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/ManualTaskQueue.h"

#include <QLineEdit>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

using namespace Qt::StringLiterals;

using Texts = std::vector<std::string>;

/// Answers queries from a table. A row whose text is not a path is an item of the front window.
class FakePanelSource : public PanelSource
{
public:
    std::map<std::string, Texts> answers;
    /// The rows that are selected at first, by query; the first row otherwise.
    std::map<std::string, int> selectedRows;
    Texts mostUsed;
    Texts kept;
    /// Rows below this folder are not there now.
    std::string away = "/no such folder";
    Texts offered;
    State current;
    Texts used;
    int homeFolderAdded = 0;
    bool isFileManagerInFront = false;
    int refreshes = 0;
    /// Ends the fetch of the front window.
    std::function<void()> fetched;

    Answer search(const std::string &query) const override
    {
        const auto found = answers.find(query);
        const auto selected = selectedRows.find(query);
        return {results(found == answers.end() ? Texts{} : found->second),
                selected == selectedRows.end() ? 0 : selected->second};
    }
    std::vector<SearchBaseResultRef> mostAccessedResults() const override
    {
        return results(mostUsed);
    }
    void recordUse(const SearchBaseResultRef &result) override { used.push_back(result->path()); }
    Texts keptOnTop() const override { return kept; }
    void keepOnTop(const SearchBaseResult &result, bool isKept) override
    {
        std::erase(kept, result.path());
        if (isKept)
            kept.push_back(result.path());
    }
    bool canForget(const SearchBaseResult &result) const override
    {
        return std::ranges::count(mostUsed, result.path()) +
                   std::ranges::count(kept, result.path()) >
               0;
    }
    void forget(const SearchBaseResult &result) override
    {
        std::erase(mostUsed, result.path());
        std::erase(kept, result.path());
    }
    State state() const override { return current; }
    bool canLeaveOut(const SearchBaseResult &result) const override
    {
        return result.type() == SearchBaseResultType::standard;
    }
    std::vector<SearchBaseResultRef> places() const override { return results(offered); }
    bool isFrontWindowSearched() const override { return isFileManagerInFront; }
    void refreshFrontWindow(std::function<void()> completion) override
    {
        ++refreshes;
        fetched = std::move(completion);
    }
    void forgetFrontWindow() override { fetched = nullptr; }
    void addHomeFolder() override { ++homeFolderAdded; }

private:
    std::vector<SearchBaseResultRef> results(const Texts &texts) const
    {
        std::vector<SearchBaseResultRef> rows;
        for (const std::string &text : texts)
            rows.push_back(std::make_shared<SearchBaseResult>(
                text, text, std::vector<TextRange>{},
                text.starts_with('/') ? SearchBaseResultType::standard
                                      : SearchBaseResultType::inFrontFinder,
                isBelow(text, away) ? away : std::string()));
        return rows;
    }
};

/// Records what it was asked.
class FakeDelegate : public SearchPanelDelegate
{
public:
    Texts asked;
    bool hasUpdate = false;
    /// The build has an address for feedback and a feed of releases.
    bool isWholeBuild = true;

    Texts takeAsked() { return std::exchange(asked, {}); }

    void closeSearchWindow(Closing) override { asked.push_back("close"); }
    void openPreferences() override { asked.push_back("preferences"); }
    void leaveOut(const std::string &folder) override { asked.push_back("leave out " + folder); }
    void rebuildSearchBase() override { asked.push_back("rebuild"); }
    void showKeys() override { asked.push_back("keys"); }
    bool takesFeedback() const override { return isWholeBuild; }
    bool looksForUpdates() const override { return isWholeBuild; }
    void sendFeedback() override { asked.push_back("feedback"); }
    void checkForUpdates() override { asked.push_back("updates"); }
    bool hasUninstalledUpdate() const override { return hasUpdate; }
    void terminate() override { asked.push_back("terminate"); }
};

/// The real panel over fakes of its surroundings, with queues that a test drives by hand.
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
                           view_, PanelSearch::Queues{background_, main_}, delegate_);
        return *panel_;
    }

    QLineEdit &field() { return view_.searchTextField(); }
    /// Replaces the text in the field and waits until typing has settled.
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

    /// Returns what the actions have done.
    Texts done()
    {
        Texts done = fakes_.fileManager.takeCalls();
        if (!fakes_.clipboard.text.empty())
            done.push_back("copied " + fakes_.clipboard.text);
        for (const auto &command : fakes_.processRunner.commands)
            done.push_back("ran " + command.arguments.back());
        return done;
    }

    /// Shows the panel, with the keyboard in its field.
    void appear()
    {
        panel();
        view_.show();
        view_.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view_));
        panel_->viewWillAppear();
        panel_->windowDidBecomeKey();
    }
    QStringList hints()
    {
        QStringList texts;
        for (const PanelFooter::Hint &hint : view_.footer().hints())
            texts << hint.key + u": "_s + hint.meaning;
        return texts;
    }

    FakePanelSource source_;
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

} // namespace quillon
