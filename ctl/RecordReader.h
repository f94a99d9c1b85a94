#pragma once

#include <cstdio>
#include <functional>
#include <span>
#include <string_view>
#include <system_error>

namespace quillon {

/// Reads a stream to its end and hands over its records, many at a time. The last record needs no
/// separator, and empty records are left out. The views are valid during the call. Returns the
/// error that ended reading early, if any.
std::error_code readRecords(std::FILE *stream, char separator,
                            const std::function<void(std::span<const std::string_view>)> &take);

} // namespace quillon
