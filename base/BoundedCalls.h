#pragma once

#include "base/Mutex.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace quillon {

/// Makes calls into file systems that may never return, because their server is gone, and gives up
/// after a time. A disk that did not answer is not asked again for a while. Safe from every thread.
class BoundedCalls
{
public:
    using Clock = std::chrono::steady_clock;

    struct Options
    {
        /// Returns the folder below which nothing answers when a call about the path does not.
        /// Without this function, only the path itself and what is below it count as silent.
        std::function<std::string(const std::string &path)> diskOf = nullptr;
        /// A disk that did not answer is not asked for this long.
        std::chrono::milliseconds silence{60'000};
        /// While this many calls have not returned, no disk is asked.
        std::size_t mostLeftBehind = 16;
        std::function<Clock::time_point()> now = Clock::now;
    };

    BoundedCalls();
    explicit BoundedCalls(Options options);
    /// Waits for no call.
    ~BoundedCalls();
    BoundedCalls(const BoundedCalls &) = delete;
    BoundedCalls &operator=(const BoundedCalls &) = delete;

    /// Calls the function, which asks a file system about the path, and returns its result. The
    /// result is absent when the call takes longer than the patience, which may be zero, and at
    /// once when the path's disk is known not to answer. A call that was given up may still be
    /// running, or never end, so the function owns whatever it touches or that outlives the call.
    /// Where the system has no thread to give, the call is made on the caller's thread.
    template <typename Function>
    std::optional<std::invoke_result_t<Function>>
    run(const std::string &path, std::chrono::milliseconds patience, Function function)
    {
        using Result = std::invoke_result_t<Function>;
        const auto result = std::make_shared<std::optional<Result>>();
        const bool returned = runTask(path, patience, [result, function = std::move(function)] {
            result->emplace(function());
        });
        return returned ? std::move(*result) : std::nullopt;
    }

private:
    class Helper;
    struct Silence;

    bool runTask(const std::string &path, std::chrono::milliseconds patience,
                 std::function<void()> task) EXCLUDES(mutex_);
    std::shared_ptr<Helper> takeHelper() EXCLUDES(mutex_);

    const Options options_;
    /// Calls that were given up hold this too, and end the silence when they return.
    const std::shared_ptr<Silence> silence_;
    Mutex mutex_;
    std::vector<std::shared_ptr<Helper>> idle_ GUARDED_BY(mutex_);
};

} // namespace quillon
