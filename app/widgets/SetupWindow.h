#pragma once

#include "app/widgets/RoundedWindow.h"
#include "app/widgets/SetupView.h"

namespace quillon {

/// An ordinary window around such a view. It has no frame, since window managers would put controls
/// on one. Its background moves it. Escape closes it if the view agrees, and a closed window is
/// merely hidden.
class SetupWindow : public RoundedWindow
{
    Q_OBJECT

public:
    /// The view becomes the window's own.
    SetupWindow(const QString &title, SetupView *view, WindowSystem &windowSystem);

    /// Shows the window in the middle of the screen that has the pointer, or brings it to the
    /// front.
    void present();

Q_SIGNALS:
    void appeared();
    void disappeared();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    SetupView *view_;
};

} // namespace quillon
