#include "app/WindowTracker.h"

#include "base/Require.h"
#include "base/TaskQueue.h"
#include "platform/WindowSystem.h"

#include <QEvent>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace quillon {

WindowTracker::WindowTracker(TaskQueue &main, WindowSystem &windowSystem)
    : main_(main), windowSystem_(windowSystem)
{}

void WindowTracker::track(Window window, QWidget &widget, std::function<void()> present)
{
    windows_[window] = {&widget, std::move(present)};
    widget.installEventFilter(this);
}

void WindowTracker::show(Window window, const std::string &activationToken)
{
    const Tracked &tracked = windows_[window];
    require(tracked.widget != nullptr, "a window that is shown is tracked");
    if (!hasVisibleWindows())
        previousWindow_ = windowSystem_.activeWindow();
    tracked.present();
    if (!activationToken.empty())
        windowSystem_.activate(tracked.widget->winId(), activationToken);
    updateActivationPolicy();
}

void WindowTracker::close(Window window)
{
    if (isVisible(window))
        windows_[window].widget->hide();
}

bool WindowTracker::isVisible(Window window) const
{
    const QWidget *widget = windows_[window].widget;
    return widget != nullptr && widget->isVisible();
}

bool WindowTracker::hasVisibleWindows() const
{
    return isVisible(searchWindow) || isOrdinaryVisible();
}

std::optional<WindowTracker::Window> WindowTracker::frontWindow() const
{
    for (const Window window : {searchWindow, preferencesWindow}) {
        if (isVisible(window))
            return window;
    }
    return std::nullopt;
}

bool WindowTracker::isOrdinaryVisible() const
{
    return std::ranges::any_of(
        std::array{preferencesWindow, buildSearchBaseWindow, onboardingWindow},
        [this](Window window) { return isVisible(window); });
}

void WindowTracker::bringForward(const std::string &activationToken)
{
    for (const Window window : {preferencesWindow, buildSearchBaseWindow, onboardingWindow}) {
        if (isVisible(window))
            show(window, activationToken);
    }
}

void WindowTracker::updateActivationPolicy()
{
    if (isOrdinaryVisible())
        policy_ = ActivationPolicy::regular;
}

void WindowTracker::afterClose()
{
    if (hasVisibleWindows())
        return;
    policy_ = ActivationPolicy::accessory;
    // Window managers return the keyboard on their own. If one leaves it with no window, it goes to
    // the window that had it.
    if (windowSystem_.activeWindow() == 0)
        windowSystem_.activate(previousWindow_);
}

bool WindowTracker::eventFilter(QObject *watched, QEvent *event)
{
    // A window that is minimised is hidden by the window manager, not closed.
    if (event->type() == QEvent::Hide && !event->spontaneous())
        main_.post([this] { afterClose(); });
    return QObject::eventFilter(watched, event);
}

} // namespace quillon
