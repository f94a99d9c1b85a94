#pragma once

#include "actions/ActionShortcutFlags.h"
#include "app/panel/Debouncer.h"
#include "app/panel/PanelKeyboard.h"
#include "app/panel/PanelMenus.h"
#include "app/panel/PanelSearch.h"
#include "app/panel/SearchPanelDelegate.h"

#include <QObject>
#include <QTimer>

#include <optional>
#include <string>
#include <vector>

class QPoint;

namespace quillon {

class ActionModelFinder;
class ActionRunner;
class SearchPanelView;
class SearchResultsModel;

/// The behaviour of the search panel: searches for what is typed once typing pauses, shows the rows
/// of the newest answer only, moves the selection with the keyboard and opens the chosen row. Main
/// thread only.
class LightningSearchViewController : public QObject
{
    Q_OBJECT

public:
    /// The actions for a row and their services.
    struct Actions
    {
        const ActionModelFinder &list;
        ActionRunner &runner;
    };

    LightningSearchViewController(Actions actions, PanelSource &source, SearchPanelView &view,
                                  PanelSearch::Queues queues, SearchPanelDelegate &delegate);

    /// Brings the rows and the state up to date before the panel is shown.
    void viewWillAppear();
    /// Gives the field the keyboard and selects its text, so that typing replaces it.
    void windowDidBecomeKey();
    void viewDidDisappear();
    /// Types the text as soon as the panel has the keyboard, in place of the text in the field.
    void typeAhead(const QString &text) { typedAhead_ += text; }
    /// Returns true when the user has typed something or chosen a row since the panel came up.
    bool isInUse() const;
    /// A build began or ended, or the folders to index have changed.
    void indexChanged();
    /// Shows the button if the delegate knows of a newer release. Each showing of the panel does so
    /// too.
    void updateUpdateButton();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void joinSearch();
    void joinField();
    void joinRows();
    void joinButtons();

    void perform(PanelCommand command, ActionShortcutFlags flags);
    void select(int row);
    void selectBy(int rows);
    int selectedRow() const;
    SearchBaseResultRef selectedResult() const;
    void showRowMenu(QPoint globalPosition);
    /// Returns what can be done with a row besides the actions.
    std::vector<PanelMenus::Entry> otherEntries(const SearchBaseResultRef &result);
    /// Keeps the row on top, or no longer.
    void keepOnTop(const SearchBaseResult &result);
    /// Forgets the uses of the row and keeps it on top no longer.
    void forget(const SearchBaseResult &result);
    /// Shows the rows for no query anew and selects the one with this path, or else the one in its
    /// place.
    void refreshDefaults(const std::string &path);

    void textChanged();
    void searchNow();
    void show(PanelSource::Answer answer);
    std::string query() const;
    /// Returns true when the text in the field is long enough to search for.
    bool isSearchWanted() const;
    /// Returns true when the rows are the answer to the text in the field.
    bool isAnswered() const { return answeredQuery_ == query(); }

    void confirm(ActionShortcutFlags flags);
    void addHomeFolder();
    /// Counts the use, and carries out the action for the keys, if there is one.
    void open(const SearchBaseResultRef &result, ActionShortcutFlags flags);

    void updateHints();
    void updateState();
    /// Fits the panel to its rows, unless the user is typing and the rows are about to change.
    void fitToRows();

    Actions actions_;
    PanelSource &source_;
    SearchPanelDelegate &delegate_;
    SearchPanelView &view_;
    SearchResultsModel &searchResults_;
    PanelSearch search_;
    Debouncer debouncedSearch_;
    QTimer stateTimer_;
    /// It runs while the user may be typing on.
    QTimer typingTimer_;
    PanelKeyboard keyboard_;
    PanelMenus menus_;

    std::optional<std::string> answeredQuery_;
    QString typedAhead_;
    /// The row that is selected until the user selects another one.
    int firstSelectedRow_ = 0;
    /// The keys of a Return that came before the answer to the typed text. They open the row that
    /// the answer selects.
    std::optional<ActionShortcutFlags> pendingOpen_;
    /// True when the user is about to choose, so that the rows stay as they are.
    bool isSelectionMoved_ = false;
};

} // namespace quillon
