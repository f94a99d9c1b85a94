#pragma once

#include <string>

namespace quillon {

class Output;

inline constexpr int SUCCESS = 0;
/// The exit status when something could not be done.
inline constexpr int FAILURE = 1;
/// The exit status when the arguments are wrong.
inline constexpr int USAGE_ERROR = 2;

// "find" uses grep's exit statuses, so that scripts can tell "nothing matches" from a failure.

inline constexpr int NOTHING_FOUND = 1;
inline constexpr int FIND_FAILURE = 2;

/// Reads the arguments and runs the command that they name. Returns the exit status.
int runCommandLine(int argc, const char *const *argv, Output &output);

/// Returns the absolute path of a folder named on the command line, with "." and ".." resolved.
std::string absolutePath(const std::string &name);

} // namespace quillon
