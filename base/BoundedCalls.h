#pragma once

#include "base/Mutex.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace quillon {

/// Makes calls that may never return, as those into a file system whose server is gone, and waits
/// for them only so long. Safe from every thread.
class BoundedCalls
{
public:
    explicit BoundedCalls(std::chrono::milliseconds patience) : patience_(patience) {}
    /// Waits for no call.
    ~BoundedCalls();
    BoundedCalls(const BoundedCalls &) = delete;
    BoundedCalls &operator=(const BoundedCalls &) = delete;

    /// What the function returns; absent when that takes longer than the patience or the limit. The
    /// function may still be running then, or never end, so it owns whatever it touches or is
    /// outlived by it. Without any time it is not called.
    template <typename Function>
    std::optional<std::invoke_result_t<Function>>
    run(Function function, std::chrono::milliseconds limit = std::chrono::milliseconds::max())
    {
        using Result = std::invoke_result_t<Function>;
        const auto result = std::make_shared<std::optional<Result>>();
        const bool returned =
            runTask([result, function = std::move(function)] { result->emplace(function()); },
                    std::min(limit, patience_));
        return returned ? std::move(*result) : std::nullopt;
    }

private:
    class Helper;

    bool runTask(std::function<void()> task, std::chrono::milliseconds limit) EXCLUDES(mutex_);
    std::shared_ptr<Helper> takeHelper() EXCLUDES(mutex_);

    const std::chrono::milliseconds patience_;
    Mutex mutex_;
    std::vector<std::shared_ptr<Helper>> idle_ GUARDED_BY(mutex_);
};

} // namespace quillon
