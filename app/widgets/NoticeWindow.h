#pragma once

#include "app/widgets/PanelPalette.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quillon {

class NoticeView;
class SetupWindow;
class WindowSystem;

/// Something to tell the user, and what can be done about it.
struct Notice
{
    struct Choice
    {
        /// The text on the button, with the mark of its mnemonic.
        QString text;
        std::function<void()> choose;
        /// It is true for a choice that leaves the window where it is.
        bool keepsWindow = false;
    };

    QString title;
    QString text;
    /// The text on the button that only takes the window away.
    QString dismissal;
    /// It is called when that button or Escape has the window taken away.
    std::function<void()> dismissed = {};
    std::optional<Choice> primary = {};
    /// Stands apart from the others.
    std::optional<Choice> aside = {};
};

/// Shows one notice at a time in a small window in the middle of the screen. Escape dismisses it.
/// Main thread only.
class NoticeWindow
{
public:
    /// The window system outlives this.
    NoticeWindow(const QString &title, WindowSystem &windowSystem);
    ~NoticeWindow();
    NoticeWindow(const NoticeWindow &) = delete;
    NoticeWindow &operator=(const NoticeWindow &) = delete;

    /// Brings the window to the front with this notice in place of the one it showed.
    void present(const Notice &notice);
    /// This notice in place of the one that is shown, where it is; nothing when none is.
    void update(const Notice &notice);
    bool isVisible() const;
    /// Takes the window away without a word to the notice.
    void hide();
    void setPanelPalette(const PanelPalette &palette);

private:
    QString title_;
    WindowSystem &windowSystem_;
    PanelPalette palette_ = PanelPalette::light();
    /// It is made when there is something to tell.
    std::unique_ptr<SetupWindow> window_;
    NoticeView *view_ = nullptr;
};

} // namespace quillon
