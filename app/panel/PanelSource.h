#pragma once

#include "results/SearchBaseResult.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace quillon {

/// Answers what the search panel asks of the index.
class PanelSource
{
public:
    struct State
    {
        /// The number of paths indexed so far.
        std::size_t count = 0;
        bool isBuilding = false;
        /// True when the index is that of the last run, and the build compares it with the disk.
        bool isComparing = false;
        /// True when the last build was cancelled, so that folders are missing.
        bool isCancelled = false;
        /// False when the settings name no folder to index.
        bool hasLocations = true;
        /// True when what the user last changed in the panel could not be written into the
        /// settings.
        bool isWriteRefused = false;
        /// The folders that the settings name and that were missing when the index was built.
        std::vector<std::string> away = {};
    };
    struct Answer
    {
        std::vector<SearchBaseResultRef> results;
        /// The row that is selected at first.
        int selectedRow = 0;
    };

    PanelSource() = default;
    virtual ~PanelSource() = default;
    PanelSource(const PanelSource &) = delete;
    PanelSource &operator=(const PanelSource &) = delete;

    /// The fewest characters, counted as code points, of a text that is searched for.
    static constexpr int SHORTEST_QUERY = 2;

    /// It is called on background threads, several at a time. "~" at the beginning of a path stands
    /// for the home folder. If the query is exactly the path of something that exists, its row is
    /// the selected one, else the first.
    virtual Answer search(const std::string &query) const = 0;
    /// Returns the rows for a query that is too short to search for.
    virtual std::vector<SearchBaseResultRef> mostAccessedResults() const = 0;
    /// Returns the rows that are shown before anything has been used: folders that the desktop
    /// offers and that exist. It is called on a background thread, since it asks the disk.
    virtual std::vector<SearchBaseResultRef> places() const = 0;
    /// Counts one use of the result's path, which is saved at once.
    virtual void recordUse(const SearchBaseResultRef &result) = 0;
    /// Returns the paths that the user keeps on top, without a slash at their end, in order. They
    /// stand first when nothing is typed.
    virtual std::vector<std::string> keptOnTop() const = 0;
    /// Keeps the result's path on top, or no longer.
    virtual void keepOnTop(const SearchBaseResult &result, bool isKept) = 0;
    /// Returns whether the result's path has been used or is kept on top.
    virtual bool canForget(const SearchBaseResult &result) const = 0;
    /// Forgets every use of the result's path and keeps it on top no longer.
    virtual void forget(const SearchBaseResult &result) = 0;
    virtual State state() const = 0;
    /// Returns whether the row is a folder that can be left out of the index: neither a folder to
    /// search itself nor a file that counts as a folder.
    virtual bool canLeaveOut(const SearchBaseResult &result) const = 0;

    /// Returns whether searches find the items of the file manager window that is in front.
    virtual bool isFrontWindowSearched() const = 0;
    /// Makes later searches find the items that the window shows now, and calls back when they do.
    /// Never calls back if forgetFrontWindow() comes first.
    virtual void refreshFrontWindow(std::function<void()> completion) = 0;
    /// Makes later searches find none of these items.
    virtual void forgetFrontWindow() = 0;

    /// Makes the user's home folder the folder to index.
    virtual void addHomeFolder() = 0;
};

} // namespace quillon
