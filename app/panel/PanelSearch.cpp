#include "app/panel/PanelSearch.h"

#include "base/TaskQueue.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr auto SLOW = 200ms;

} // namespace

PanelSearch::PanelSearch(PanelSource &source, Queues queues) : source_(source), queues_(queues)
{
    slowness_.setSingleShot(true);
    slowness_.setInterval(SLOW);
    connect(&slowness_, &QTimer::timeout, this, [this] {
        isSearchSlow_ = hasPendingSearch_;
        tellBusy();
    });
}

void PanelSearch::start(const std::string &query)
{
    if (!hasPendingSearch_)
        slowness_.start();
    hasPendingSearch_ = true;
    queues_.background.post([this, query, number = ++newestSearch_] {
        queues_.main.post([this, query, number, answer = source_.search(query)] {
            if (number != newestSearch_)
                return;
            end();
            Q_EMIT answered(query, answer);
        });
    });
}

void PanelSearch::end()
{
    hasPendingSearch_ = false;
    slowness_.stop();
    isSearchSlow_ = false;
    tellBusy();
}

PanelSearch::Defaults PanelSearch::defaults() const
{
    std::vector<SearchBaseResultRef> rows = source_.mostAccessedResults();
    const bool isMostUsed = !rows.empty();
    if (!isMostUsed)
        rows = places_;
    const std::vector<std::string> kept = source_.keptOnTop();
    rows = withKeptFirst(kept, rows);
    QStringList heading;
    if (!kept.empty())
        heading << tr("Kept on top");
    if (rows.size() > kept.size())
        heading << (isMostUsed ? tr("Most used") : tr("Places"));
    return {std::move(rows), heading.join(QStringLiteral(" · "))};
}

void PanelSearch::readPlaces()
{
    if (!source_.mostAccessedResults().empty())
        return;
    queues_.background.post([this] {
        queues_.main.post([this, places = source_.places()] {
            if (areSameRows(places, places_))
                return;
            places_ = places;
            Q_EMIT outdated();
        });
    });
}

void PanelSearch::fetchFrontWindow()
{
    isFetchingFrontWindow_ = source_.isFrontWindowSearched();
    tellBusy();
    if (!isFetchingFrontWindow_)
        return;
    source_.refreshFrontWindow([this] {
        isFetchingFrontWindow_ = false;
        tellBusy();
        Q_EMIT outdated();
    });
}

void PanelSearch::forgetFrontWindow()
{
    isFetchingFrontWindow_ = false;
    tellBusy();
    source_.forgetFrontWindow();
}

void PanelSearch::tellBusy()
{
    Q_EMIT busyChanged(isSearchSlow_ || isFetchingFrontWindow_);
}

bool areSameRows(const std::vector<SearchBaseResultRef> &one,
                 const std::vector<SearchBaseResultRef> &other)
{
    return std::ranges::equal(one, other, [](const auto &a, const auto &b) {
        return a->type() == b->type() && a->path() == b->path() &&
               a->awayFolder() == b->awayFolder() && a->highlightRanges() == b->highlightRanges();
    });
}

} // namespace quillon
