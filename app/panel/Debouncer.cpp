#include "app/panel/Debouncer.h"

#include <utility>

namespace quillon {

Debouncer::Debouncer(std::chrono::milliseconds delay, std::function<void()> callback)
    : callback_(std::move(callback))
{
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(delay);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { callback_(); });
}

void Debouncer::call()
{
    if (timer_.interval() > 0)
        timer_.start();
    else
        callback_();
}

void Debouncer::fireNow()
{
    timer_.stop();
    callback_();
}

void Debouncer::cancel()
{
    timer_.stop();
}

} // namespace quillon
