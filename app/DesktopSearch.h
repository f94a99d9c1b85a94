#pragma once

#include "core/SearchBaseBuilder.h"
#include "platform/RemoteControl.h"

#include <functional>
#include <string>
#include <vector>

namespace quillon {

class ActionModelFinder;
class ActionRunner;
class PanelSource;
class Preferences;
class TaskQueue;

/// Answers the desktop's own search as the panel would, and does what is chosen there. Main thread
/// only, unless stated otherwise.
class DesktopSearch : private SearchBaseBuildObserver
{
public:
    using Receive = std::function<void(const std::vector<RemoteControl::Row> &rows)>;

    struct Services
    {
        PanelSource &source;
        SearchBaseBuilder &builder;
        const Preferences &preferences;
        /// The actions for a row and their runner.
        const ActionModelFinder &actions;
        ActionRunner &runner;
        /// Searches run on this concurrent queue, which must end before this object does.
        TaskQueue &background;
        TaskQueue &main;
    };

    /// The home folder is an absolute path.
    DesktopSearch(const Services &services, std::string homeFolder);
    ~DesktopSearch() override;

    /// Hands over the rows that the panel shows for the text, without those that are away, on any
    /// thread. Hands over nothing at once when the user wants no rows there, or for a text that the
    /// panel would not search for. A build that has just begun is waited for, as the index of the
    /// last run may be on its way.
    void search(const std::string &text, Receive receive);
    /// Returns the row of an item. Any thread may call this.
    RemoteControl::Row describe(const std::string &path) const;
    /// Returns what else can be done with a row.
    static std::vector<RemoteControl::RowAction> rowActions();
    /// Counts a use of the item and carries out the action: "open", for which the panel's plain
    /// Return stands, or the id of a row action. Any other action does nothing.
    void run(const std::string &action, const std::string &path);
    /// Counts a use of the item and does what plain Return in the panel does. Hands over once, on
    /// any thread, why that failed, in English, or an empty text.
    void open(const std::string &path,
              const std::function<void(const std::string &fault)> &receive);

private:
    void indexRestored() override { answerWaiting(); }
    void buildEnded() override { answerWaiting(); }

    void answerWaiting();
    std::vector<RemoteControl::Row> rows(const std::string &text) const;

    const Services services_;
    const std::string homeFolder_;
    /// The searches that wait for the index.
    std::vector<std::function<void()>> waiting_;
};

} // namespace quillon
