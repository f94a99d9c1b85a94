#pragma once

#include <string>

namespace quillon {

/// Says what the panel asks of the application around it. Main thread only.
class SearchPanelDelegate
{
public:
    SearchPanelDelegate() = default;
    virtual ~SearchPanelDelegate() = default;
    SearchPanelDelegate(const SearchPanelDelegate &) = delete;
    SearchPanelDelegate &operator=(const SearchPanelDelegate &) = delete;

    enum class Closing
    {
        dismissed,
        /// Another window is about to come up.
        forAction
    };
    virtual void closeSearchWindow(Closing closing) = 0;
    virtual void openPreferences() = 0;
    /// Asks the user which folders are to be left out of the index, and proposes this one.
    virtual void leaveOut(const std::string &folder) = 0;
    virtual void rebuildSearchBase() = 0;
    /// Shows all keys of the panel, as a page of their own.
    virtual void showKeys() = 0;
    /// Returns whether there is a place that takes feedback.
    virtual bool takesFeedback() const = 0;
    virtual void sendFeedback() = 0;
    /// Returns whether this build looks for newer releases.
    virtual bool looksForUpdates() const = 0;
    /// The user asked for this check, so a window says what came of it.
    virtual void checkForUpdates() = 0;
    /// Returns whether the last check found a newer release.
    virtual bool hasUninstalledUpdate() const = 0;
    virtual void terminate() = 0;
};

} // namespace quillon
