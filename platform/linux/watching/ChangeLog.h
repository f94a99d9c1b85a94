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

/// What a flush has found to tell. Not locked.
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
        /// Whoever is told of it looks at everything below as well.
        folder,
    };

    explicit ChangeLog(const WatchFilter &items) : items_(items) {}

    void add(const std::string &path, Found found, std::uint32_t flags = 0);
    /// Adds the path only when the index disagrees, or may be about to.
    void compare(const std::string &path, Found found, std::uint32_t flags = 0);
    /// Adds again what was told lately at or below the path: another folder may have stood there
    /// while the receiver looked.
    void tellAgain(std::string_view path);
    /// Returns whether an update that looked at the path on the disk earlier may not have reached
    /// the index yet.
    bool wasToldLately(std::string_view path) const;
    /// The names in a folder at or below which something was told lately.
    std::set<std::string> namesToldLately(std::string_view folder) const;
    /// Everything added since, in byte order of the paths, without what is below a folder that is
    /// told itself.
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

    /// The topmost folder above the path that is told itself, or null.
    Entry *covering(std::string_view path);

    const WatchFilter &items_;
    std::map<std::string, Entry, std::less<>> entries_;
    std::map<std::string, LastReport, std::less<>> told_;
};

} // namespace quillon
