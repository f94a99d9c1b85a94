#include "indexing/SearchBaseLogger.h"

#include "prefs/PreferenceKeys.h"

#include <array>
#include <utility>

namespace quillon {

namespace {

/// Returns the time in the form 2024-05-01T09:30:00Z.
std::string internetTime(std::chrono::system_clock::time_point time)
{
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::seconds>(time - day));
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text.data();
}

} // namespace

SearchBaseLogger::SearchBaseLogger(DefaultsStore &store, std::FILE *output, Now now)
    : isEchoWanted_(store, PreferenceKeys::DEBUG_LOG_FS_EVENTS),
      now_(std::move(now)),
      output_(output)
{}

void SearchBaseLogger::log(std::string_view message, bool forcePrint)
{
    const std::string text(message);
    log(std::span(&text, 1), forcePrint);
}

void SearchBaseLogger::log(std::span<const std::string> messages, bool forcePrint)
{
    if (messages.empty())
        return;
    const std::string prefix = internetTime(now_()) + " ";
    if (forcePrint || isEchoWanted_.value()) {
        const MutexLock lock(outputMutex_);
        for (const std::string &message : messages) {
            const std::string line = prefix + message + "\n";
            std::fwrite(line.data(), 1, line.size(), output_);
        }
        std::fflush(output_);
    }

    // A message that later messages of this call would push out again is not put in.
    if (messages.size() > MAX_RECENT_ITEMS)
        messages = messages.last(MAX_RECENT_ITEMS);
    const MutexLock lock(mutex_);
    for (const std::string &message : messages)
        recentLogItems_.push_back(prefix + message);
    while (recentLogItems_.size() > MAX_RECENT_ITEMS)
        recentLogItems_.pop_front();
}

void SearchBaseLogger::print(std::string_view line)
{
    const MutexLock lock(outputMutex_);
    std::fwrite(line.data(), 1, line.size(), output_);
    std::fputc('\n', output_);
    std::fflush(output_);
}

std::vector<std::string> SearchBaseLogger::recentLogItems() const
{
    const MutexLock lock(mutex_);
    return {recentLogItems_.begin(), recentLogItems_.end()};
}

} // namespace quillon
