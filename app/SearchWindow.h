#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include <cstdint>

namespace quillon {

class IconSource;
class SearchPanelView;
class WindowSystem;

/// The frameless window around the panel: rounded, above the others, out of the taskbar, gone when
/// another window becomes active. Kept when closed and shown again.
class SearchWindow : public QWidget
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
    /// It was shown and now has the keyboard.
    void becameKey();
    void appeared();
    void disappeared();

protected:
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void hideWithoutFocus();
    void fitToCompositing();
    void placeOnScreenWithPointer();
    QRect panelRect() const { return rect().marginsRemoved(contentsMargins()); }
    void paintShadow(QPainter &painter);

    SearchPanelView *view_;
    WindowSystem &windowSystem_;
    /// Had the keyboard before the panel came up.
    std::uintptr_t previousWindow_ = 0;
    /// Since it was last brought up.
    QElapsedTimer presented_;
};

} // namespace quillon
