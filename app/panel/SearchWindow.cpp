#include "app/panel/SearchWindow.h"

#include "app/panel/SearchPanelView.h"
#include "app/panel/SearchResultsTable.h"
#include "platform/WindowSystem.h"

#include <QApplication>
#include <QCursor>
#include <QLayout>
#include <QMouseEvent>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <algorithm>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// Qt reports a loss of the keyboard up to 100 ms late.
constexpr auto SETTLING = 200ms;
/// On a busy machine it takes this long until the keyboard has come to a panel that is shown.
constexpr std::chrono::milliseconds ARRIVING = 2s;
/// This share of the free height is above the panel.
constexpr double SHARE_ABOVE = 0.3;

} // namespace

SearchWindow::SearchWindow(IconSource &icons, WindowSystem &windowSystem)
    : RoundedWindow(windowSystem, Qt::Tool | Qt::WindowStaysOnTopHint),
      view_(new SearchPanelView(icons, this))
{
    setWindowTitle(QStringLiteral("Quillon"));
    setContent(view_);
    fitToCompositing();
    connect(qApp, &QGuiApplication::focusWindowChanged, this, [this] {
        focusChanged_.start();
        hideWithoutFocus();
    });
    connect(&view_->tableView(), &SearchResultsTable::dragBegan, this,
            [this] { isDraggedFrom_ = true; });
    connect(&view_->tableView(), &SearchResultsTable::dragEnded, this, [this] {
        isDraggedFrom_ = false;
        hideWithoutFocus();
    });
    isPanel_ = this->windowSystem().makePanel(winId());
    // Only a window that is shown learns which screen the desktop has chosen.
    if (isPanel_)
        connect(windowHandle(), &QWindow::screenChanged, this, &SearchWindow::place);
}

void SearchWindow::present()
{
    if (!isVisible()) {
        Q_EMIT willAppear();
        previousWindow_ = windowSystem().activeWindow();
        fitToCompositing();
        place();
        // Until Qt reports the loss, it believes that the panel has the keyboard from the last
        // time.
        hasHadKeyboard_ = QGuiApplication::focusWindow() == windowHandle();
        // Window managers forget this each time that the window is hidden.
        windowSystem().keepOutOfTaskbar(winId());
        show();
    }
    raise();
    activateWindow();
    presented_.start();
    // Qt may not have noticed yet that the panel lost the keyboard, and would not activate it.
    if (QGuiApplication::focusWindow() == windowHandle()) {
        QT_WARNING_PUSH
        QT_WARNING_DISABLE_DEPRECATED
        QApplication::setActiveWindow(this);
        QT_WARNING_POP
    }
}

void SearchWindow::dismiss()
{
    // A window that took the keyboard away meanwhile keeps it.
    const bool hasKeyboard = isActiveWindow();
    hide();
    if (hasKeyboard)
        windowSystem().activate(previousWindow_);
}

bool SearchWindow::hasFocusWithin() const
{
    const QWindow *focused = QGuiApplication::focusWindow();
    // Some desktops give a menu of the panel the keyboard as a window of its own.
    return focused && (focused == windowHandle() ||
                       windowHandle()->isAncestorOf(focused, QWindow::IncludeTransients));
}

void SearchWindow::hideWithoutFocus()
{
    if (!isVisible() || isDraggedFrom_)
        return;
    if (hasFocusWithin()) {
        hasHadKeyboard_ = true;
        return;
    }
    // Another window of this program lost the keyboard, which is on its way to this one.
    if (!hasHadKeyboard_)
        return;
    // The panel may have lost the keyboard before it was shown, and Qt reports it late. Then the
    // keyboard is on its way.
    auto wait = SETTLING - std::chrono::milliseconds(presented_.elapsed());
    const std::uintptr_t activeId = windowSystem().activeWindow();
    // The keyboard may be with no window for a moment, on its way from one that made way.
    if (activeId == 0 && presented_.elapsed() < ARRIVING.count())
        wait = SETTLING - std::chrono::milliseconds(focusChanged_.elapsed());
    const QWidget *active = QWidget::find(activeId);
    // A window manager takes the keyboard from the active window while it moves that window. If it
    // then activates another window instead of giving the keyboard back, no event says so.
    if (active == this)
        wait = SETTLING;
    // A window of this program made way for the panel, and the window manager has not noticed yet.
    if (active && !active->isVisible()) {
        wait = SETTLING;
        activateWindow();
    }
    if (wait > 0ms)
        QTimer::singleShot(wait, this, &SearchWindow::hideWithoutFocus);
    else
        hide();
}

void SearchWindow::place()
{
    const QScreen *pointed = QGuiApplication::screenAt(QCursor::pos());
    const QScreen *other = pointed ? pointed : QGuiApplication::primaryScreen();
    const QRect free = (isPanel_ ? screen() : other)->availableGeometry();
    const QRect panel = panelRect();
    // The upper edge is at the same height however many rows there are.
    const int spare = free.height() - view_->greatestHeight();
    const int top = std::max(static_cast<int>(spare * SHARE_ABOVE), 0) - panel.top();
    if (!isPanel_) {
        placeAt(
            {free.left() + (free.width() - panel.width()) / 2 - panel.left(), free.top() + top});
        return;
    }
    windowSystem().setPanelTop(winId(), top);
    update(); // the desktop moves the panel with its next picture
}

void SearchWindow::changeEvent(QEvent *event)
{
    RoundedWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        Q_EMIT becameKey();
}

void SearchWindow::resizeEvent(QResizeEvent *event)
{
    RoundedWindow::resizeEvent(event);
    // The desktop may set the size that a panel had asked for before its rows changed.
    if (isPanel_ && size() != sizeHint())
        QTimer::singleShot(0, this, [this] { resize(sizeHint()); });
}

void SearchWindow::showEvent(QShowEvent *)
{
    Q_EMIT appeared();
    // The panel comes up at the height of its rows.
    layout()->activate();
}
void SearchWindow::hideEvent(QHideEvent *)
{
    Q_EMIT disappeared();
}

void SearchWindow::mousePressEvent(QMouseEvent *event)
{
    // The shadow looks like a place outside the panel, so a click there dismisses the panel as
    // well.
    if (!panelRect().contains(event->position().toPoint()))
        dismiss();
    else if (event->button() == Qt::LeftButton)
        windowHandle()->startSystemMove();
}

} // namespace quillon
