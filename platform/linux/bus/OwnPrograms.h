#pragma once

#include <string>
#include <vector>

namespace quillon {

/// Returns the folder of the program that runs, with links resolved. It is empty when the system
/// does not tell.
std::string ownProgramFolder();

/// Turns this process into another program. Returns only when that fails, with the reason.
std::string becomeProgram(const std::string &path, const std::vector<std::string> &arguments);

} // namespace quillon
