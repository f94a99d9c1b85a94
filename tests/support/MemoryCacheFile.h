#pragma once

#include "platform/CacheFile.h"

#include <optional>
#include <string>

namespace quillon {

/// A cache file in memory.
struct MemoryCacheFile final : CacheFile
{
    std::optional<std::string> read() const override { return bytes; }
    std::error_code write(std::string_view fresh) override
    {
        if (!error) {
            bytes = fresh;
            ++writes;
        }
        return error;
    }

    void confirm() override { ++confirmations; }
    std::optional<std::chrono::system_clock::time_point> confirmedAt() const override
    {
        return std::nullopt;
    }

    int confirmations = 0;
    std::optional<std::string> bytes;
    int writes = 0;
    std::error_code error;
};

} // namespace quillon
