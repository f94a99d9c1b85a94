#include "app/panel/LightningSearchViewController.h"

#include "actions/ActionModelFinder.h"
#include "actions/ActionRunner.h"
#include "app/panel/ActionHints.h"
#include "app/panel/PanelMessage.h"
#include "app/panel/SearchIndicator.h"
#include "app/panel/SearchPanelView.h"
#include "app/panel/SearchResultsModel.h"
#include "app/widgets/PanelMetrics.h"
#include "platform/TaskQueue.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr auto SEARCH_DELAY = 50ms;
constexpr auto SPINNER_DELAY = 200ms;
constexpr auto STATE_INTERVAL = 250ms;
/// Shorter texts show the most used folders.
constexpr qsizetype SHORTEST_QUERY = 2;

ActionShortcutFlags shortcutFlags(Qt::KeyboardModifiers modifiers)
{
    return {.option = modifiers.testFlag(Qt::AltModifier),
            .shift = modifiers.testFlag(Qt::ShiftModifier),
            .command = modifiers.testFlag(Qt::ControlModifier)};
}

bool areSameRows(const std::vector<SearchBaseResultRef> &one,
                 const std::vector<SearchBaseResultRef> &other)
{
    return std::ranges::equal(one, other, [](const auto &a, const auto &b) {
        return a->type() == b->type() && a->path() == b->path() &&
               a->highlightRanges() == b->highlightRanges();
    });
}

} // namespace

LightningSearchViewController::LightningSearchViewController(Actions actions, PanelSource &source,
                                                             SearchPanelView &view, Queues queues,
                                                             SearchPanelDelegate &delegate)
    : actions_(actions),
      source_(source),
      queues_(queues),
      delegate_(delegate),
      view_(view),
      searchResults_(view.searchResults()),
      debouncedSearch_(SEARCH_DELAY, [this] { searchNow(); })
{
    spinnerDelay_.setSingleShot(true);
    spinnerDelay_.setInterval(SPINNER_DELAY);
    connect(&spinnerDelay_, &QTimer::timeout, this, [this] {
        isSearchSlow_ = hasPendingSearch_;
        updateSpinner();
    });
    stateTimer_.setInterval(STATE_INTERVAL);
    connect(&stateTimer_, &QTimer::timeout, this, [this] { updateState(); });

    QLineEdit &field = view_.searchTextField();
    field.installEventFilter(this);
    connect(&field, &QLineEdit::textChanged, this, [this] { textChanged(); });
    connect(&view_.tableView(), &QListView::clicked, this, [this](const QModelIndex &index) {
        if (const auto result = searchResults_.result(index.row()))
            open(result, shortcutFlags(QGuiApplication::keyboardModifiers()));
    });
    updateHints();
    searchNow();
}

// Appearing and disappearing

void LightningSearchViewController::viewWillAppear()
{
    isSelectionMoved_ = false;
    select(0);
    updateHints();
    searchNow();
    updateState();
    fetchFrontWindow();
}

void LightningSearchViewController::windowDidBecomeKey()
{
    view_.searchTextField().setFocus();
    view_.searchTextField().selectAll();
}

void LightningSearchViewController::viewDidDisappear()
{
    pendingOpen_.reset();
    stateTimer_.stop();
    isFetchingFrontWindow_ = false;
    updateSpinner();
    source_.forgetFrontWindow();
}

void LightningSearchViewController::indexChanged()
{
    searchNow();
    updateState();
}

// Searching

std::string LightningSearchViewController::query() const
{
    return view_.searchTextField().text().toStdString();
}

void LightningSearchViewController::textChanged()
{
    pendingOpen_.reset();
    debouncedSearch_.call();
}

void LightningSearchViewController::searchNow()
{
    debouncedSearch_.cancel();
    // Characters of the user: a letter beyond the basic plane is one.
    if (view_.searchTextField().text().toUcs4().size() >= SHORTEST_QUERY)
        startSearch(query());
    else
        searchFinished(query(), source_.mostAccessedResults());
}

void LightningSearchViewController::startSearch(const std::string &query)
{
    if (!hasPendingSearch_)
        spinnerDelay_.start();
    hasPendingSearch_ = true;
    queues_.background.post([this, query, number = ++newestSearch_] {
        queues_.main.post([this, query, number, results = source_.search(query)]() mutable {
            if (number == newestSearch_)
                searchFinished(query, std::move(results));
        });
    });
}

void LightningSearchViewController::searchFinished(const std::string &query,
                                                   std::vector<SearchBaseResultRef> results)
{
    // The user typed on: the answer to the newer text is on its way.
    if (query != this->query())
        return;
    hasPendingSearch_ = false;
    spinnerDelay_.stop();
    isSearchSlow_ = false;
    updateSpinner();

    // The same question asked again, of a newer index: not below the hands of whoever is choosing.
    const bool isRefresh = isAnswered();
    answeredQuery_ = query;
    if (!isRefresh || (!isSelectionMoved_ && !areSameRows(results, searchResults_.results())))
        showResults(std::move(results));
    updateState();

    if (const auto flags = std::exchange(pendingOpen_, std::nullopt)) {
        if (const auto first = searchResults_.result(0))
            open(first, *flags);
    }
}

void LightningSearchViewController::showResults(std::vector<SearchBaseResultRef> results)
{
    isSelectionMoved_ = false;
    searchResults_.setResults(std::move(results));
    select(0);
}

void LightningSearchViewController::fetchFrontWindow()
{
    isFetchingFrontWindow_ = source_.isFrontWindowSearched();
    updateSpinner();
    if (!isFetchingFrontWindow_)
        return;
    source_.refreshFrontWindow([this] {
        isFetchingFrontWindow_ = false;
        updateSpinner();
        searchNow();
    });
}

void LightningSearchViewController::updateSpinner()
{
    view_.activityIndicator().setSpinning(isSearchSlow_ || isFetchingFrontWindow_);
}

// Keyboard

bool LightningSearchViewController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && handleKey(static_cast<QKeyEvent &>(*event)))
        return true;
    return QObject::eventFilter(watched, event);
}

bool LightningSearchViewController::handleKey(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        confirm(shortcutFlags(event.modifiers()));
        return true;
    case Qt::Key_Tab:
        confirm({});
        return true;
    case Qt::Key_Escape:
        delegate_.closeSearchWindow(SearchPanelDelegate::Closing::dismissed);
        return true;
    case Qt::Key_Down:
        selectBy(1);
        return true;
    case Qt::Key_Up:
        selectBy(-1);
        return true;
    case Qt::Key_PageDown:
        selectBy(metrics::VISIBLE_ROWS);
        return true;
    case Qt::Key_PageUp:
        selectBy(-metrics::VISIBLE_ROWS);
        return true;
    case Qt::Key_Q:
        if (!event.modifiers().testFlag(Qt::ControlModifier))
            return false;
        delegate_.terminate();
        return true;
    default:
        return false;
    }
}

int LightningSearchViewController::selectedRow() const
{
    return view_.tableView().currentIndex().row();
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

void LightningSearchViewController::confirm(ActionShortcutFlags flags)
{
    if (!source_.state().hasLocations) {
        source_.addHomeFolder();
        return;
    }
    // While the rows belong to an older text, what the user means is the answer to this one.
    if (!isAnswered() && debouncedSearch_.isPending())
        searchNow();
    if (!isAnswered())
        pendingOpen_ = flags;
    else if (const auto result = searchResults_.result(selectedRow()))
        open(result, flags);
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
    hints_ = actionHints(actions_.list.loadActions());
}

void LightningSearchViewController::updateState()
{
    const PanelSource::State state = source_.state();
    const QString folders = tr("%Ln folder(s)", nullptr, static_cast<int>(state.count));
    view_.footer().setStatus(state.isBuilding ? tr("Indexing: %1").arg(folders) : folders);
    updateMessage(state);
    if (!state.isBuilding || !view_.isVisible())
        stateTimer_.stop();
    else if (!stateTimer_.isActive())
        stateTimer_.start();
}

void LightningSearchViewController::updateMessage(const PanelSource::State &state)
{
    const bool isEmpty = searchResults_.rowCount() == 0;
    view_.setShowsMessage(isEmpty);
    view_.footer().setHints(isEmpty ? std::vector<PanelFooter::Hint>{} : hints_);
    PanelMessage &message = view_.message();
    const QString text = view_.searchTextField().text();
    if (!state.hasLocations) {
        message.setMessage(tr("No folders to search yet"),
                           tr("Press Return to search your home folder,\nor name other folders "
                              "under “qln-bookmarks” in %1")
                               .arg(settingsPlace_));
    } else if (state.isBuilding) {
        message.setMessage(tr("Indexing your folders…"),
                           tr("%Ln folder(s) so far: you can already search", nullptr,
                              static_cast<int>(state.count)));
    } else if (text.size() < SHORTEST_QUERY) {
        message.setMessage(tr("Type a part of a folder’s name"),
                           tr("The folders you open most will be listed here"));
    } else {
        message.setMessage(tr("No folder matches “%1”").arg(text),
                           text.contains(u' ') ? tr("Try it without the blanks")
                                               : tr("Try fewer letters"));
    }
}

} // namespace quillon
