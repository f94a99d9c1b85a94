#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace quillon {

/// A file for what the program can find out again, private to the user. Safe from every thread.
class CacheFile
{
public:
    CacheFile() = default;
    virtual ~CacheFile() = default;
    CacheFile(const CacheFile &) = delete;
    CacheFile &operator=(const CacheFile &) = delete;

    /// Returns the bytes. Absent where there is no such file, where it belongs to somebody else,
    /// and where it cannot be read.
    virtual std::optional<std::string> read() const = 0;
    /// Puts the bytes in the place of what the file holds. After a failure the file is as it was.
    virtual std::error_code write(std::string_view bytes) = 0;
    /// Says that what the file holds is right as of now. A failure changes nothing.
    virtual void confirm() = 0;
    /// Returns when the content was written or confirmed; absent where read() gives nothing.
    virtual std::optional<std::chrono::system_clock::time_point> confirmedAt() const = 0;
};

} // namespace quillon
