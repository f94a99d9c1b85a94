#include "app/widgets/SetupWindow.h"

#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>

namespace quillon {

SetupWindow::SetupWindow(const QString &title, SetupView *view, WindowSystem &windowSystem)
    : RoundedWindow(windowSystem, Qt::Window), view_(view)
{
    setWindowTitle(title);
    setContent(view_);
}

void SetupWindow::present()
{
    if (!isVisible()) {
        fitToCompositing();
        const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
        QRect frame = rect();
        frame.moveCenter(
            (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry().center());
        placeAt(frame.topLeft());
        show();
        view_->setFocus();
    }
    raise();
    activateWindow();
}

void SetupWindow::closeEvent(QCloseEvent *event)
{
    event->setAccepted(view_->mayClose());
}

void SetupWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        close();
    else
        RoundedWindow::keyPressEvent(event);
}

void SetupWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        windowHandle()->startSystemMove();
}

void SetupWindow::showEvent(QShowEvent *)
{
    Q_EMIT appeared();
}

void SetupWindow::hideEvent(QHideEvent *)
{
    Q_EMIT disappeared();
}

} // namespace quillon
