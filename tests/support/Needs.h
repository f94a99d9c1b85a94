#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

namespace quillon {

/// Returns whether a program of the name is found on the PATH.
inline bool isInstalled(const std::string &program)
{
    const char *path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::error_code absent;
        if (std::filesystem::exists(std::filesystem::path(folder) / program, absent))
            return true;
    }
    return false;
}

/// Returns whether a test fails when the system lacks what it needs. Otherwise it is skipped.
inline bool needsAreRequired()
{
    return std::getenv("QUILLON_REQUIRE_TOOLS") != nullptr;
}

} // namespace quillon

/// Ends the test if the system lacks what it needs, which the text names.
#define QUILLON_NEEDS(isThere, what)                                                               \
    if (isThere) {                                                                                 \
    } else if (quillon::needsAreRequired())                                                        \
        FAIL() << "missing here: " << what;                                                        \
    else                                                                                           \
        GTEST_SKIP() << "missing here: " << what

/// Ends the test if the program is not installed.
#define QUILLON_NEEDS_TOOL(program) QUILLON_NEEDS(quillon::isInstalled(program), program)
