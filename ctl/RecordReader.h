#pragma once

#include <cstdio>
#include <functional>
#include <span>
#include <string_view>
#include <system_error>

namespace quillon {

/// Reads a stream to its end and hands over its records, many at a time; the last one need not
/// have a separator. Empty records are left out. The views are valid during the call. Returns why
/// reading ended early, if it did.
std::error_code readRecords(std::FILE *stream, char separator,
                            const std::function<void(std::span<const std::string_view>)> &take);

} // namespace quillon
