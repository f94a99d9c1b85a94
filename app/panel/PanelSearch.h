#pragma once

#include "app/panel/PanelSource.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <string>
#include <vector>

namespace quillon {

class TaskQueue;

/// Asks the source for rows without making the user wait: searches on a background queue, of which
/// only the newest answers, and keeps the rows that need no search. Main thread only.
class PanelSearch : public QObject
{
    Q_OBJECT

public:
    struct Queues
    {
        /// Searches run on this concurrent queue, which must end before this object does.
        TaskQueue &background;
        /// The queue of this object's thread.
        TaskQueue &main;
    };

    /// The rows that are shown while nothing is searched for.
    struct Defaults
    {
        std::vector<SearchBaseResultRef> rows;
        /// The line above them, which says what they are.
        QString heading;
    };

    PanelSearch(PanelSource &source, Queues queues);

    /// Starts a search, whose answer replaces those of earlier ones.
    void start(const std::string &query);
    /// Returns to the rows that need no search. A search that is under way still answers.
    void end();
    Defaults defaults() const;
    /// Reads the places that the rows show before anything has been used.
    void readPlaces();
    /// Reads what the file manager's front window shows, if that is searched.
    void fetchFrontWindow();
    void forgetFrontWindow();

Q_SIGNALS:
    void answered(const std::string &query, const PanelSource::Answer &answer);
    /// The same search would have other rows now.
    void outdated();
    /// A search takes long enough to say so, or no longer.
    void busyChanged(bool isBusy);

private:
    void tellBusy();

    PanelSource &source_;
    Queues queues_;
    QTimer slowness_;
    /// True until the newest search has ended.
    bool hasPendingSearch_ = false;
    /// True when the pending search has been running long enough to show it.
    bool isSearchSlow_ = false;
    bool isFetchingFrontWindow_ = false;
    /// The number of the newest search. An earlier one may have known less, so its answer is
    /// dropped.
    std::uint64_t newestSearch_ = 0;
    /// The rows that are shown before anything has been used, as they were read when the panel last
    /// came up.
    std::vector<SearchBaseResultRef> places_;
};

/// Returns whether the user would see the same rows.
bool areSameRows(const std::vector<SearchBaseResultRef> &one,
                 const std::vector<SearchBaseResultRef> &other);

} // namespace quillon
