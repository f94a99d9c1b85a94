#pragma once

#include <string>

namespace quillon {

class Output;

inline constexpr int SUCCESS = 0;
/// Something asked for could not be done.
inline constexpr int FAILURE = 1;
/// The arguments make no sense.
inline constexpr int USAGE_ERROR = 2;

// "find" ends as grep does: scripts tell an answer without rows from a failure.

inline constexpr int NOTHING_FOUND = 1;
inline constexpr int FIND_FAILURE = 2;

/// Reads the arguments and runs the command they name. Returns the exit status.
int runCommandLine(int argc, const char *const *argv, Output &output);

/// The absolute path of a folder named on the command line, "." and ".." resolved.
std::string absolutePath(const std::string &name);

} // namespace quillon
