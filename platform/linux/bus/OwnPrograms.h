#pragma once

#include <string>
#include <vector>

namespace quillon {

/// The folder of the program that runs, links resolved; empty when the system does not tell.
std::string ownProgramFolder();

/// Goes on as another program in this process. Returns only when that fails, with the reason.
std::string becomeProgram(const std::string &path, const std::vector<std::string> &arguments);

} // namespace quillon
