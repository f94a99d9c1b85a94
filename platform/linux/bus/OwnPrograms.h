#pragma once

#include <string>
#include <vector>

namespace quillon {

/// Returns the folder of the running program, with links resolved. It is empty when the system does
/// not say.
std::string ownProgramFolder();

/// Turns this process into another program. Returns only when that fails, with the reason.
std::string becomeProgram(const std::string &path, const std::vector<std::string> &arguments);

} // namespace quillon
