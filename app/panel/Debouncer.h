#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

namespace quillon {

/// Runs a callback once calls have stopped coming for a while. It needs a Qt event loop.
class Debouncer
{
public:
    Debouncer(std::chrono::milliseconds delay, std::function<void()> callback);

    /// Runs the callback after the delay, which begins anew with this call, or at once when the
    /// delay is zero.
    void call();
    /// Runs the callback now and forgets a pending call.
    void fireNow();
    void cancel();
    bool isPending() const { return timer_.isActive(); }

private:
    std::function<void()> callback_;
    QTimer timer_;
};

} // namespace quillon
