#pragma once

#include "base/TaskQueue.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>

namespace quillon {

/// Makes one call out of the many that are asked for under the same key within a while.
///
/// One serial queue alone uses it, the one it calls on, which runs none of its calls any more when
/// this is destroyed.
class Coalesce
{
public:
    using Callback = std::function<void(const std::string &key)>;
    static constexpr std::chrono::milliseconds DELAY{3000};

    /// The period, in seconds, is kept and has no influence; the delay has.
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
