#pragma once

#include "app/widgets/RoundedWindow.h"

#include <QElapsedTimer>

#include <cstdint>

namespace quillon {

class IconSource;
class SearchPanelView;
class WindowSystem;

/// The window around the panel. It is above the others and out of the taskbar. It is hidden when
/// another window becomes active, unless a row is being dragged there. Its background moves it
/// until it is shown the next time, unless the desktop shows it as a panel. A closed window is kept
/// and shown again.
class SearchWindow : public RoundedWindow
{
    Q_OBJECT

public:
    /// The native window is made at once, so that the first showing is as fast as the others.
    SearchWindow(IconSource &icons, WindowSystem &windowSystem);

    SearchPanelView &view() { return *view_; }

    /// Brings the panel up on the screen with the pointer, or on the one that the desktop chooses,
    /// and gives it the keyboard.
    void present();
    /// Hides the panel and gives the keyboard back to the window that had it. To make way for
    /// another window, hide() is called instead, which gives the keyboard to no window.
    void dismiss();

Q_SIGNALS:
    /// The panel is not visible yet, and the window in front is still another one.
    void willAppear();
    /// The panel was shown and now has the keyboard.
    void becameKey();
    void appeared();
    void disappeared();

protected:
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    bool hasFocusWithin() const;
    void hideWithoutFocus();
    void place();

    SearchPanelView *view_;
    /// The window that had the keyboard before the panel came up.
    std::uintptr_t previousWindow_ = 0;
    /// Runs since the panel was last brought up.
    QElapsedTimer presented_;
    /// Runs since Qt last reported that the keyboard is with another window, or with none.
    QElapsedTimer focusChanged_;
    /// True when the panel has had the keyboard since it was shown, so that it can lose it.
    bool hasHadKeyboard_ = false;
    /// True when the desktop shows the window as a panel and chooses its screen.
    bool isPanel_ = false;
    /// True while something is being dragged from here to another window.
    bool isDraggedFrom_ = false;
};

} // namespace quillon
