#pragma once

#include <QObject>
#include <QPointer>

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

class QWidget;

namespace quillon {

class TaskQueue;
class WindowSystem;

/// The windows of the program: which of them exist and are visible, and what follows when they come
/// and go. Main thread only.
class WindowTracker : public QObject
{
    Q_OBJECT

public:
    enum Window : std::size_t
    {
        searchWindow,
        preferencesWindow,
        buildSearchBaseWindow,
        onboardingWindow,
    };
    static constexpr std::size_t COUNT = 4;

    /// With accessory, the program is in no taskbar; with regular, its ordinary windows are. Each
    /// window asks for its own place in the taskbar when it is shown.
    enum class ActivationPolicy
    {
        accessory,
        regular,
    };

    /// The queue and the window system outlive this object.
    WindowTracker(TaskQueue &main, WindowSystem &windowSystem);

    /// After this call the widget is that window. A window that was never tracked is never visible.
    /// The function shows the window and asks for the keyboard.
    void track(Window window, QWidget &widget, std::function<void()> present);

    /// Shows the window in front of all others and gives it the keyboard. The token is the right to
    /// the keyboard that came with the request.
    void show(Window window, const std::string &activationToken = {});
    /// Hides the window. The step that follows a closed window is then taken.
    void close(Window window);

    bool isVisible(Window window) const;
    bool hasVisibleWindows() const;
    /// Returns the panel if it is visible, else the preferences if they are, else nothing.
    std::optional<Window> frontWindow() const;
    /// Brings the ordinary windows that are visible to the front.
    void bringForward(const std::string &activationToken);

    void updateActivationPolicy();
    ActivationPolicy activationPolicy() const { return policy_; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Tracked
    {
        QPointer<QWidget> widget;
        std::function<void()> present;
    };

    void afterClose();
    bool isOrdinaryVisible() const;

    TaskQueue &main_;
    WindowSystem &windowSystem_;
    std::array<Tracked, COUNT> windows_;
    ActivationPolicy policy_ = ActivationPolicy::accessory;
    /// The window, of whichever program, that had the keyboard before the first of the visible
    /// windows came up.
    std::uintptr_t previousWindow_ = 0;
};

} // namespace quillon
