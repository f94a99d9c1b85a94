#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// Returns the code that makes a shell know the function "q" and the key Ctrl+G, or nothing for a
/// shell other than "bash", "zsh" and "fish".
std::optional<std::string> shellInit(std::string_view shell);

} // namespace quillon
