#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace quillon {

/// A file for data that the program can compute again, private to the user. Safe from every thread.
class CacheFile
{
public:
    CacheFile() = default;
    virtual ~CacheFile() = default;
    CacheFile(const CacheFile &) = delete;
    CacheFile &operator=(const CacheFile &) = delete;

    /// Returns the bytes, or nothing when there is no such file, when it belongs to somebody else
    /// or when it cannot be read.
    virtual std::optional<std::string> read() const = 0;
    /// Replaces the content of the file by the bytes. After a failure the file is as it was.
    virtual std::error_code write(std::string_view bytes) = 0;
    /// Marks the content of the file as right at this time. A failure changes nothing.
    virtual void confirm() = 0;
    /// Returns when the content was last written or confirmed, or nothing when read() returns
    /// nothing.
    virtual std::optional<std::chrono::system_clock::time_point> confirmedAt() const = 0;
};

} // namespace quillon
