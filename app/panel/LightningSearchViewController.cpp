#include "app/panel/LightningSearchViewController.h"

#include "actions/ActionModelFinder.h"
#include "actions/ActionRunner.h"
#include "app/panel/ActionHints.h"
#include "app/panel/MenuButton.h"
#include "app/panel/PanelMessage.h"
#include "app/panel/PanelTexts.h"
#include "app/panel/SearchIndicator.h"
#include "app/panel/SearchPanelView.h"
#include "app/panel/SearchResultsModel.h"
#include "app/panel/SearchResultsTable.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/QuillonStyle.h"
#include "base/PathText.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr auto SEARCH_DELAY = 50ms;
constexpr auto STATE_INTERVAL = 250ms;
/// The query has settled when nothing was typed for so long.
constexpr auto TYPING_PAUSE = 250ms;

} // namespace

LightningSearchViewController::LightningSearchViewController(Actions actions, PanelSource &source,
                                                             SearchPanelView &view,
                                                             PanelSearch::Queues queues,
                                                             SearchPanelDelegate &delegate)
    : actions_(actions),
      source_(source),
      delegate_(delegate),
      view_(view),
      searchResults_(view.searchResults()),
      search_(source, queues),
      debouncedSearch_(SEARCH_DELAY, [this] { searchNow(); }),
      keyboard_(view.searchTextField()),
      menus_(view, delegate)
{
    stateTimer_.setInterval(STATE_INTERVAL);
    connect(&stateTimer_, &QTimer::timeout, this, [this] { updateState(); });

    typingTimer_.setSingleShot(true);
    typingTimer_.setInterval(TYPING_PAUSE);
    connect(&typingTimer_, &QTimer::timeout, this, &LightningSearchViewController::fitToRows);

    joinSearch();
    joinField();
    joinRows();
    joinButtons();
    searchNow();
    // The panel comes up with them and does not change its height a moment later.
    search_.readPlaces();
}

void LightningSearchViewController::joinSearch()
{
    connect(&search_, &PanelSearch::busyChanged, this,
            [this](bool isBusy) { view_.activityIndicator().setAnimating(isBusy); });
    connect(&search_, &PanelSearch::outdated, this, &LightningSearchViewController::searchNow);
    connect(&search_, &PanelSearch::answered, this,
            [this](const std::string &query, const PanelSource::Answer &answer) {
                // Where the user has typed on, the answer to the newer text is on its way.
                if (query != this->query())
                    return;
                view_.setHeading({});
                show(answer);
            });
}

void LightningSearchViewController::joinField()
{
    QLineEdit &field = view_.searchTextField();
    field.installEventFilter(this);
    connect(&field, &QLineEdit::textChanged, this, &LightningSearchViewController::textChanged);
    connect(&keyboard_, &PanelKeyboard::commanded, this, &LightningSearchViewController::perform);
    connect(&keyboard_, &PanelKeyboard::rowWanted, this, [this](int row) {
        // A row is chosen by what the user sees, so no newer answer may take its place.
        if (const auto result = searchResults_.result(row))
            open(result, {});
    });
    connect(&keyboard_, &PanelKeyboard::compositionEnded, this, [this] {
        if (!isAnswered())
            debouncedSearch_.call();
    });
    connect(&keyboard_, &PanelKeyboard::heldKeysChanged, this,
            [this](ActionShortcutFlags flags) { view_.footer().setHeldKeys(flags); });
}

void LightningSearchViewController::joinRows()
{
    SearchResultsTable &table = view_.tableView();
    connect(&table, &QListView::clicked, this, [this, &table](const QModelIndex &index) {
        table.update(index);
        if (const auto result = searchResults_.result(index.row()))
            open(result, shortcutFlags(QGuiApplication::keyboardModifiers()));
    });
    connect(&table, &QListView::pressed, this, [this] {
        pendingOpen_.reset();
        isSelectionMoved_ = true;
    });
    connect(table.selectionModel(), &QItemSelectionModel::currentChanged, this,
            &LightningSearchViewController::updateHints);
    connect(&table, &QWidget::customContextMenuRequested, this, [this, &table](QPoint position) {
        if (table.indexAt(position).isValid())
            showRowMenu(table.viewport()->mapToGlobal(position));
    });
    connect(&table, &SearchResultsTable::dragEnded, this, [this](bool isTaken) {
        if (isTaken)
            delegate_.closeSearchWindow(SearchPanelDelegate::Closing::forAction);
    });
}

void LightningSearchViewController::joinButtons()
{
    PanelMessage &message = view_.message();
    const std::pair<QAbstractButton *, std::function<void()>> buttons[] = {
        {&view_.updateButton(), [this] { delegate_.checkForUpdates(); }},
        {&view_.menuButton(), [this] { menus_.showMain(); }},
        {&message.homeFolderButton(), [this] { addHomeFolder(); }},
        {&message.preferencesButton(), [this] { delegate_.openPreferences(); }},
    };
    connect(&view_.footer(), &PanelFooter::moreClicked, this,
            [this] { perform(PanelCommand::showRowMenu, {}); });
    connect(&view_.footer(), &PanelFooter::noticeClicked, this,
            [this] { delegate_.openPreferences(); });
    for (const auto &[button, pressed] : buttons) {
        keyboard_.watchButton(*button);
        connect(button, &QAbstractButton::clicked, this, pressed);
    }
}

// Appearing and disappearing

void LightningSearchViewController::viewWillAppear()
{
    isSelectionMoved_ = false;
    select(firstSelectedRow_);
    updateHints();
    searchNow();
    updateState();
    search_.fetchFrontWindow();
    search_.readPlaces();
    updateUpdateButton();
}

void LightningSearchViewController::windowDidBecomeKey()
{
    view_.searchTextField().setFocus();
    view_.searchTextField().selectAll();
    if (!typedAhead_.isEmpty())
        view_.searchTextField().insert(std::exchange(typedAhead_, {}));
}

bool LightningSearchViewController::isInUse() const
{
    const QLineEdit &field = view_.searchTextField();
    return isSelectionMoved_ || (!field.text().isEmpty() && field.selectedText() != field.text());
}

void LightningSearchViewController::viewDidDisappear()
{
    menus_.close();
    keyboard_.reset();
    pendingOpen_.reset();
    stateTimer_.stop();
    search_.forgetFrontWindow();
}

void LightningSearchViewController::indexChanged()
{
    searchNow();
    updateState();
}

void LightningSearchViewController::updateUpdateButton()
{
    view_.updateButton().setVisible(delegate_.hasUninstalledUpdate());
}

// Searching

std::string LightningSearchViewController::query() const
{
    return view_.searchTextField().text().toStdString();
}

void LightningSearchViewController::textChanged()
{
    pendingOpen_.reset();
    typingTimer_.start();
    // A text that is being composed is not what the user looks for yet.
    if (!keyboard_.isComposing())
        debouncedSearch_.call();
}

void LightningSearchViewController::searchNow()
{
    debouncedSearch_.cancel();
    if (isSearchWanted()) {
        search_.start(query());
        return;
    }
    search_.end();
    PanelSearch::Defaults defaults = search_.defaults();
    view_.setHeading(defaults.heading);
    show({.results = std::move(defaults.rows)});
}

bool LightningSearchViewController::isSearchWanted() const
{
    // The user counts characters: a letter beyond the basic plane is one.
    return view_.searchTextField().text().toUcs4().size() >= PanelSource::SHORTEST_QUERY;
}

void LightningSearchViewController::show(PanelSource::Answer answer)
{
    // The answer of a newer index to the same question leaves the rows to a user who is choosing.
    const bool isRefresh = isAnswered();
    answeredQuery_ = query();
    searchResults_.setKept(source_.keptOnTop());
    if (!isRefresh || !isSelectionMoved_) {
        isSelectionMoved_ = false;
        firstSelectedRow_ = answer.selectedRow;
        if (!isRefresh || !areSameRows(answer.results, searchResults_.results()))
            searchResults_.setResults(std::move(answer.results));
        if (selectedRow() != firstSelectedRow_)
            select(firstSelectedRow_);
        if (searchResults_.rowCount() == 0)
            updateHints();
    }
    updateState();

    if (const auto flags = std::exchange(pendingOpen_, std::nullopt)) {
        if (const auto result = selectedResult())
            open(result, *flags);
    }
}

// Keyboard and mouse

void LightningSearchViewController::perform(PanelCommand command, ActionShortcutFlags flags)
{
    switch (command) {
    case PanelCommand::open:
        return confirm(flags);
    case PanelCommand::openPlainly:
        return confirm({});
    case PanelCommand::close:
        return delegate_.closeSearchWindow(SearchPanelDelegate::Closing::dismissed);
    case PanelCommand::nextRow:
        return selectBy(1);
    case PanelCommand::previousRow:
        return selectBy(-1);
    case PanelCommand::nextPage:
        return selectBy(metrics::VISIBLE_ROWS);
    case PanelCommand::previousPage:
        return selectBy(-metrics::VISIBLE_ROWS);
    case PanelCommand::firstRow:
        return selectBy(-searchResults_.rowCount());
    case PanelCommand::lastRow:
        return selectBy(searchResults_.rowCount());
    case PanelCommand::showRowMenu: {
        const QListView &table = view_.tableView();
        const QRect row = table.visualRect(table.currentIndex());
        return showRowMenu(table.viewport()->mapToGlobal(QStyle::visualPos(
            table.layoutDirection(), row, row.bottomLeft() + QPoint(metrics::TEXT_LEFT, 0))));
    }
    case PanelCommand::keepOnTop:
        if (const auto result = selectedResult())
            keepOnTop(*result);
        return;
    case PanelCommand::forget:
        if (const auto result = selectedResult())
            forget(*result);
        return;
    case PanelCommand::goToButtons:
        return view_.focusButtons();
    case PanelCommand::openPreferences:
        return delegate_.openPreferences();
    case PanelCommand::showKeys:
        return delegate_.showKeys();
    case PanelCommand::terminate:
        return delegate_.terminate();
    }
}

bool LightningSearchViewController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ContextMenu)
        return QObject::eventFilter(watched, event);
    // The one of the keyboard is the selected row's, and comes with the key itself.
    const auto &request = static_cast<const QContextMenuEvent &>(*event);
    if (request.reason() != QContextMenuEvent::Keyboard)
        menus_.showForField(request.globalPos());
    return true;
}

int LightningSearchViewController::selectedRow() const
{
    return view_.tableView().currentIndex().row();
}

SearchBaseResultRef LightningSearchViewController::selectedResult() const
{
    return searchResults_.result(selectedRow());
}

void LightningSearchViewController::select(int row)
{
    const QModelIndex index = searchResults_.index(row);
    view_.tableView().setCurrentIndex(index);
    view_.tableView().scrollTo(index);
}

void LightningSearchViewController::selectBy(int rows)
{
    pendingOpen_.reset();
    const int last = searchResults_.rowCount() - 1;
    const int row = std::clamp(selectedRow() + rows, 0, std::max(last, 0));
    if (last < 0 || row == selectedRow())
        return;
    isSelectionMoved_ = true;
    select(row);
}

void LightningSearchViewController::showRowMenu(QPoint globalPosition)
{
    const SearchBaseResultRef result = selectedResult();
    if (!result)
        return;
    pendingOpen_.reset();
    isSelectionMoved_ = true;
    menus_.showForRow(view_.footer().hints(), otherEntries(result), globalPosition,
                      [this, result](ActionShortcutFlags flags) { open(result, flags); });
}

std::vector<PanelMenus::Entry>
LightningSearchViewController::otherEntries(const SearchBaseResultRef &result)
{
    std::vector<PanelMenus::Entry> entries;
    entries.push_back({.text = tr("Keep on top"),
                       .choose = [this, result] { keepOnTop(*result); },
                       .keys = "Ctrl+D",
                       .isChecked = searchResults_.isKept(*result)});
    if (source_.canForget(*result))
        entries.push_back({.text = tr("Forget this folder"),
                           .choose = [this, result] { forget(*result); },
                           .keys = "Shift+Delete"});
    if (source_.canLeaveOut(*result))
        entries.push_back({.text = tr("Leave this folder out…"), .choose = [this, result] {
                               delegate_.leaveOut(
                                   std::string(withoutTrailingSlashes(result->path())));
                           }});
    entries.push_back({.text = tr("Properties"), .choose = [this, result] {
                           delegate_.closeSearchWindow(SearchPanelDelegate::Closing::forAction);
                           actions_.runner.showProperties(result);
                       }});
    return entries;
}

void LightningSearchViewController::keepOnTop(const SearchBaseResult &result)
{
    source_.keepOnTop(result, !searchResults_.isKept(result));
    // The query in the field is left as it is.
    if (isSearchWanted()) {
        searchResults_.setKept(source_.keptOnTop());
        updateState();
    } else {
        refreshDefaults(result.path());
    }
}

void LightningSearchViewController::forget(const SearchBaseResult &result)
{
    if (!source_.canForget(result))
        return;
    source_.forget(result);
    if (!isSearchWanted())
        return refreshDefaults(result.path());
    isSelectionMoved_ = false;
    searchNow();
}

void LightningSearchViewController::refreshDefaults(const std::string &path)
{
    const int row = selectedRow();
    // The user asked for the rows to change.
    isSelectionMoved_ = false;
    searchNow();
    const auto &rows = searchResults_.results();
    const auto found = std::ranges::find(rows, withoutTrailingSlashes(path), [](const auto &each) {
        return withoutTrailingSlashes(each->path());
    });
    const auto last = static_cast<int>(rows.size()) - 1;
    select(found == rows.end() ? std::min(row, last) : static_cast<int>(found - rows.begin()));
    isSelectionMoved_ = true;
}

void LightningSearchViewController::confirm(ActionShortcutFlags flags)
{
    // While the rows belong to an older text, the user means the answer to the newer one.
    if (!isAnswered() && debouncedSearch_.isPending())
        searchNow();
    if (!isAnswered())
        pendingOpen_ = flags;
    else if (const auto result = selectedResult())
        open(result, flags);
    else if (!source_.state().hasLocations)
        addHomeFolder();
}

void LightningSearchViewController::addHomeFolder()
{
    source_.addHomeFolder();
    updateState();
}

void LightningSearchViewController::open(const SearchBaseResultRef &result,
                                         ActionShortcutFlags flags)
{
    pendingOpen_.reset();
    source_.recordUse(result);
    const auto action = actions_.list.actionFor(flags);
    if (!action)
        return;
    delegate_.closeSearchWindow(SearchPanelDelegate::Closing::forAction);
    actions_.runner.runAction(*action, result);
}

// What the panel says about the keys and the index

void LightningSearchViewController::updateHints()
{
    const SearchBaseResultRef result = selectedResult();
    view_.footer().setHints(result ? rowHints(actions_.list.loadActions(), actions_.runner, *result)
                                   : std::vector<PanelFooter::Hint>{});
}

void LightningSearchViewController::updateState()
{
    const PanelSource::State state = source_.state();
    view_.footer().setStatus(PanelTexts::status(state));
    view_.setShowsMessage(searchResults_.rowCount() == 0);
    const PanelTexts::Message message = PanelTexts::message(state, view_.searchTextField().text());
    view_.message().setMessage(message.title, message.sentence);
    view_.message().setOffersFolders(!state.hasLocations);
    fitToRows();
    if (!state.isBuilding || !view_.isVisible())
        stateTimer_.stop();
    else if (!stateTimer_.isActive())
        stateTimer_.start();
}

void LightningSearchViewController::fitToRows()
{
    if (isAnswered() && !typingTimer_.isActive())
        view_.fitToRows();
}

} // namespace quillon
