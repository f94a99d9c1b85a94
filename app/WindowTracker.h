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

/// The program's windows: which there are and which are seen, and what follows when they come and
/// go. Main thread only.
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

    /// Accessory, the program is seen in no taskbar; regular, its ordinary windows are. Windows
    /// carry this on their own: each asks for its place in the taskbar when it is shown.
    enum class ActivationPolicy
    {
        accessory,
        regular,
    };

    /// Both outlive this.
    WindowTracker(TaskQueue &main, WindowSystem &windowSystem);

    /// After this call the widget is that window. A window that was never tracked is never visible.
    /// The function shows it and asks for the keyboard.
    void track(Window window, QWidget &widget, std::function<void()> present);

    /// Shows the window in front of all others with the keyboard, to which whoever asked for it may
    /// have the right.
    void show(Window window, const std::string &activationToken = {});
    /// Hides it; the after-close step follows.
    void close(Window window);

    bool isVisible(Window window) const;
    bool hasVisibleWindows() const;
    /// Returns the panel where it is visible, else the preferences; absent where neither is.
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
    /// Had the keyboard before the first of the windows that are visible came up; of whichever
    /// program.
    std::uintptr_t previousWindow_ = 0;
};

} // namespace quillon
