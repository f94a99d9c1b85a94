#pragma once

#include <optional>
#include <string>

namespace quillon {

/// The file URI of an absolute path: plain ASCII that stands for exactly its bytes.
std::string fileUri(const std::string &path);
/// The path of a file on this machine, without a slash at its end unless it is the root. Absent
/// for anything else.
std::optional<std::string> localPath(const std::string &uri);

} // namespace quillon
