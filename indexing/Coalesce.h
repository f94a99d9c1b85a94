#pragma once

#include "base/TaskQueue.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>

namespace quillon {

/// Makes one call of the many that are requested under the same key within a short time.
///
/// Only one serial queue uses an object, the queue on which it makes its calls. By the time the
/// object is destroyed, that queue no longer runs any of its calls.
class Coalesce
{
public:
    using Callback = std::function<void(const std::string &key)>;
    static constexpr std::chrono::milliseconds DELAY{3000};

    /// The period, in seconds, is kept and has no effect. The delay decides.
    explicit Coalesce(double withinPeriod, std::chrono::milliseconds delay = DELAY)
        : withinPeriod_(withinPeriod), delay_(delay)
    {}

    /// Calls back on the queue once the delay is over, unless a call is pending under the key
    /// already.
    void coalesce(const std::string &key, TaskQueue &queue, Callback callback);
    /// Drops every pending call.
    void forgetAll() { callbacks_.clear(); }

    double withinPeriod() const { return withinPeriod_; }

private:
    struct Pending
    {
        Callback callback;
        std::uint64_t number = 0;
    };

    void deliver(const std::string &key, std::uint64_t number);

    const double withinPeriod_;
    const std::chrono::milliseconds delay_;
    std::unordered_map<std::string, Pending> callbacks_;
    std::uint64_t lastNumber_ = 0;
};

} // namespace quillon
