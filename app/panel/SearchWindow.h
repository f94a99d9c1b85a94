#pragma once

#include "app/widgets/RoundedWindow.h"

#include <QElapsedTimer>

#include <cstdint>

namespace quillon {

class IconSource;
class SearchPanelView;
class WindowSystem;

/// The window around the panel: above the others, out of the taskbar, gone when another window
/// becomes active, unless a row is being dragged there. The background moves it until it is shown
/// the next time. Kept when closed and shown again.
class SearchWindow : public RoundedWindow
{
    Q_OBJECT

public:
    /// The native window is made at once, so that the first showing is as quick as the others.
    SearchWindow(IconSource &icons, WindowSystem &windowSystem);

    SearchPanelView &view() { return *view_; }

    /// Brings the panel up on the screen with the pointer and gives it the keyboard.
    void present();
    /// Hides the panel and gives the keyboard back to the window that had it. Where another window
    /// is about to come up, hide() does not get in its way.
    void dismiss();

Q_SIGNALS:
    /// Nothing of it is seen yet, and the window in front is still another one.
    void willAppear();
    /// It was shown and now has the keyboard.
    void becameKey();
    void appeared();
    void disappeared();

protected:
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    bool hasFocusWithin() const;
    void hideWithoutFocus();
    void placeOnScreenWithPointer();

    SearchPanelView *view_;
    /// Had the keyboard before the panel came up.
    std::uintptr_t previousWindow_ = 0;
    /// This clock runs since the panel was last brought up.
    QElapsedTimer presented_;
    /// It says whether the panel has had the keyboard since it was shown, so that it can lose the
    /// keyboard.
    bool hasHadKeyboard_ = false;
    /// Something is on its way from here to another window.
    bool isDraggedFrom_ = false;
};

} // namespace quillon
