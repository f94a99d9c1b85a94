#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quillon {

class NoticeView;
class SetupWindow;
class WindowSystem;

/// A message to the user, and what can be done about it.
struct Notice
{
    struct Choice
    {
        /// The text on the button, with the mark of its mnemonic.
        QString text;
        std::function<void()> choose;
        /// True for a choice that leaves the window open.
        bool keepsWindow = false;
    };

    QString title;
    QString text;
    /// The text of the button that only closes the window.
    QString dismissal;
    /// Runs when that button or Escape has closed the window.
    std::function<void()> dismissed = {};
    std::optional<Choice> primary = {};
    /// A choice that is apart from the others.
    std::optional<Choice> aside = {};
};

/// Shows one notice at a time in a small window in the middle of the screen. Escape dismisses it.
/// Main thread only.
class NoticeWindow
{
public:
    /// The window system outlives this object.
    NoticeWindow(const QString &title, WindowSystem &windowSystem);
    ~NoticeWindow();
    NoticeWindow(const NoticeWindow &) = delete;
    NoticeWindow &operator=(const NoticeWindow &) = delete;

    /// Brings the window to the front with this notice in place of the one it showed.
    void present(const Notice &notice);
    /// Shows this notice in place of the one that is shown. Does nothing when none is shown.
    void update(const Notice &notice);
    bool isVisible() const;
    /// Closes the window without calling the notice.
    void hide();

private:
    QString title_;
    WindowSystem &windowSystem_;
    /// The window is made when it is first needed.
    std::unique_ptr<SetupWindow> window_;
    NoticeView *view_ = nullptr;
};

} // namespace quillon
