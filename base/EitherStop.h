#pragma once

#include <functional>
#include <stop_token>

namespace quillon {

/// Requests a stop as soon as one of two other stops is requested.
class EitherStop
{
public:
    EitherStop(const std::stop_token &a, const std::stop_token &b)
        : onA_(a, [this] { source_.request_stop(); }), onB_(b, [this] { source_.request_stop(); })
    {}
    std::stop_token token() const { return source_.get_token(); }

private:
    std::stop_source source_;
    std::stop_callback<std::function<void()>> onA_;
    std::stop_callback<std::function<void()>> onB_;
};

} // namespace quillon
