#pragma once

#include <optional>
#include <string>

namespace quillon {

/// Returns the file URI of an absolute path, in ASCII. It stands for exactly the path's bytes, but
/// for slashes at its end.
std::string fileUri(const std::string &path);
/// Returns the path in a file URI of this machine, without a slash at its end unless it is the
/// root. Returns nothing for every other URI.
std::optional<std::string> localPath(const std::string &uri);

} // namespace quillon
