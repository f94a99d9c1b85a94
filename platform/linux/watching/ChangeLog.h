#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class WatchFilter;

/// The changes that a flush has found and will report. Not locked.
class ChangeLog
{
public:
    using Clock = std::chrono::steady_clock;

    struct Change
    {
        std::string path;
        std::uint32_t flags = 0;
    };
    enum class Found
    {
        nothing,
        /// A file, or a folder that is not entered.
        item,
        /// The receiver of the report also checks everything below the folder.
        folder,
    };

    explicit ChangeLog(const WatchFilter &items) : items_(items) {}

    void add(const std::string &path, Found found, std::uint32_t flags = 0);
    /// Adds the path only if the index disagrees, or may be about to.
    void compare(const std::string &path, Found found, std::uint32_t flags = 0);
    /// Adds again what was recently reported at or below the path, since another folder may have
    /// been there while the receiver checked it.
    void tellAgain(std::string_view path);
    /// Returns whether an update that read the path earlier may not have reached the index yet.
    bool wasToldLately(std::string_view path) const;
    /// Returns the names in a folder at or below which something was recently reported.
    std::set<std::string> namesToldLately(std::string_view folder) const;
    /// Returns everything added since the last call, in byte order of the paths, without what is
    /// below a folder that is itself reported.
    std::vector<Change> take(Clock::time_point now);

private:
    /// This is far longer than an update takes from its event to the index.
    static constexpr std::chrono::seconds SETTLED{60};

    struct Entry
    {
        std::uint32_t flags = 0;
        Found found = Found::nothing;
    };
    struct LastReport
    {
        std::uint32_t flags = 0;
        Clock::time_point at;
    };

    /// Returns the topmost folder above the path that is itself reported, or null.
    Entry *covering(std::string_view path);

    const WatchFilter &items_;
    std::map<std::string, Entry, std::less<>> entries_;
    std::map<std::string, LastReport, std::less<>> told_;
};

} // namespace quillon
