#pragma once

#include "base/Mutex.h"
#include "prefs/Preferences.h"

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class DefaultsStore;

/// Keeps the last lines about the index, and echoes them while the user wants to see them.
///
/// Safe from every thread. An echo may wait for the program that reads it, so nothing is logged
/// while the index is locked: callers collect lines and log them afterwards. Reading never waits
/// for an echo.
class SearchBaseLogger
{
public:
    using Now = std::function<std::chrono::system_clock::time_point()>;
    static constexpr std::size_t MAX_RECENT_ITEMS = 100;

    /// The store and the output outlive this object.
    explicit SearchBaseLogger(DefaultsStore &store, std::FILE *output = stdout,
                              Now now = std::chrono::system_clock::now);

    /// Keeps the message after the date and time. Echoes it when forcePrint is true, or when the
    /// setting "debug-log-fs-events" says so at this moment.
    void log(std::string_view message, bool forcePrint = false);
    /// Does what one call for each message would do, at the cost of little more than one.
    void log(std::span<const std::string> messages, bool forcePrint = false);
    /// Writes a line to the output and keeps nothing.
    void print(std::string_view line) EXCLUDES(outputMutex_);

    /// Returns the lines that are kept, oldest first, at most MAX_RECENT_ITEMS.
    std::vector<std::string> recentLogItems() const EXCLUDES(mutex_);

private:
    PreferencesBoolean isEchoWanted_;
    const Now now_;
    Mutex outputMutex_;
    std::FILE *const output_ PT_GUARDED_BY(outputMutex_);
    mutable Mutex mutex_;
    std::deque<std::string> recentLogItems_ GUARDED_BY(mutex_);
};

} // namespace quillon
