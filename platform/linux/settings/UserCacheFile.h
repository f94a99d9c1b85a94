#pragma once

#include "platform/CacheFile.h"

#include <filesystem>
#include <string>
#include <utility>

namespace quillon {

/// Returns "$XDG_CACHE_HOME/quillon/index". If that variable is not an absolute path, "~/.cache"
/// takes its place.
std::string standardIndexPath();

/// A file that only its owner may read. It is written beside its place and then renamed.
class UserCacheFile final : public CacheFile
{
public:
    /// The folder is made when the file is first written.
    explicit UserCacheFile(std::filesystem::path path) : path_(std::move(path)) {}

    std::optional<std::string> read() const override;
    std::error_code write(std::string_view bytes) override;
    void confirm() override;
    std::optional<std::chrono::system_clock::time_point> confirmedAt() const override;

private:
    const std::filesystem::path path_;
};

} // namespace quillon
