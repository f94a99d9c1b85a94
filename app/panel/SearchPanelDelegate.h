#pragma once

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
    virtual void sendFeedback() = 0;
    /// The user asked for this check, so a window says what came of it.
    virtual void checkForUpdates() = 0;
    /// Returns whether the last check found a newer release.
    virtual bool hasUninstalledUpdate() const = 0;
    virtual void terminate() = 0;
};

} // namespace quillon
