#pragma once

#include <QByteArray>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace quillon {

// The single steps of replacing a file. Each step says how it failed, tries a call again that a
// signal interrupted, and gives up on a call that signals interrupt for ever.

/// The mode of a file for the user alone.
inline constexpr mode_t PRIVATE_FILE = 0600;

/// The result of the last call, -1 with errno EINTR when even the last attempt was interrupted.
template <typename Call>
auto uninterrupted(const Call &call)
{
    constexpr int MOST_INTERRUPTIONS = 1000;
    auto result = call();
    for (int i = 0; result < 0 && errno == EINTR && i < MOST_INTERRUPTIONS; ++i)
        result = call();
    return result;
}

/// What the path leads to when the links at its end are followed, whether or not it is there.
/// Absent, with errno set, where a link cannot be read.
std::optional<std::filesystem::path> followLinks(std::filesystem::path path);

/// Makes the folder and those above it, for the user alone. False, with errno set, when that
/// failed; a folder that is there already is a success.
bool makeFolder(const std::filesystem::path &folder);

/// Writes the bytes to a new file beside the target, which only the owner may read, and returns its
/// name once a loss of power would leave the bytes there. Absent, with errno set and without a
/// file, when that failed.
std::optional<std::filesystem::path> writeBeside(const std::filesystem::path &target,
                                                 const QByteArray &bytes);
/// Does what writeBeside() does for a copy that is kept as TARGET.bad-TIME. Where something has
/// that name, the copy's name gets a later second.
std::optional<std::filesystem::path> writeCopyBeside(const std::filesystem::path &target,
                                                     const QByteArray &bytes);
/// Returns true for the name of a file that writeBeside() makes for a target of this name.
bool isTemporaryName(std::string_view name, const std::string &target);

/// Removes what writeBeside() made for the target a minute ago or earlier and nobody has renamed.
void removeLeftovers(const std::filesystem::path &target);

enum class Exchange
{
    done,
    failed,
    /// The file system cannot do it.
    unsupported,
};
/// Gives each of the two files the name of the other, in one step. Sets errno when it failed.
Exchange exchange(const std::filesystem::path &a, const std::filesystem::path &b);
/// Gives the file a name that nothing has yet. Sets errno when it failed, EEXIST for a name that
/// something has.
bool moveToFreeName(const std::filesystem::path &file, const std::filesystem::path &name);
/// Renames the file to a name as writeCopyBeside() gives, and returns the name. Absent, with errno
/// set, when that failed.
std::optional<std::filesystem::path> moveAside(const std::filesystem::path &file,
                                               const std::filesystem::path &target);

} // namespace quillon
