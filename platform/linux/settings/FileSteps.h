#pragma once

#include <QByteArray>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace quillon {

// The single steps of replacing a file. Each step reports how it failed. It repeats a call that a
// signal interrupted, and gives up on a call that signals interrupt for ever.

/// The mode of a file for the user alone.
inline constexpr mode_t PRIVATE_FILE = 0600;

/// Returns the result of the last call, which is -1 with errno EINTR when even the last attempt was
/// interrupted.
template <typename Call>
auto uninterrupted(const Call &call)
{
    constexpr int MOST_INTERRUPTIONS = 1000;
    auto result = call();
    for (int i = 0; result < 0 && errno == EINTR && i < MOST_INTERRUPTIONS; ++i)
        result = call();
    return result;
}

/// Returns where the path leads when the links at its end are followed, whether or not anything is
/// there. Returns nothing, with errno set, when a link cannot be read.
std::optional<std::filesystem::path> followLinks(std::filesystem::path path);

/// Makes the folder and those above it, for the user alone. Returns false, with errno set, when
/// that failed. A folder that exists already is a success.
bool makeFolder(const std::filesystem::path &folder);

/// Writes the bytes to a new file beside the target, which only the owner may read, and returns its
/// name once the bytes would survive a loss of power. Returns nothing, with errno set and without a
/// file, when that failed.
std::optional<std::filesystem::path> writeBeside(const std::filesystem::path &target,
                                                 const QByteArray &bytes);
/// Does what writeBeside() does for a copy that is kept as TARGET.bad-TIME. When that name is
/// taken, the copy's name gets a later second.
std::optional<std::filesystem::path> writeCopyBeside(const std::filesystem::path &target,
                                                     const QByteArray &bytes);
/// Returns true for the name of a file that writeBeside() makes for a target of this name.
bool isTemporaryName(std::string_view name, const std::string &target);

/// Removes files that writeBeside() made for the target at least a minute ago and that nobody has
/// renamed.
void removeLeftovers(const std::filesystem::path &target);

enum class Exchange
{
    done,
    failed,
    /// The file system cannot do it.
    unsupported,
};
/// Exchanges the names of the two files in one step. Sets errno when that failed.
Exchange exchange(const std::filesystem::path &a, const std::filesystem::path &b);
/// Gives the file a name that is still free. Sets errno when that failed, to EEXIST when the name
/// is taken.
bool moveToFreeName(const std::filesystem::path &file, const std::filesystem::path &name);
/// Renames the file to a name as writeCopyBeside() chooses, and returns the name. Returns nothing,
/// with errno set, when that failed.
std::optional<std::filesystem::path> moveAside(const std::filesystem::path &file,
                                               const std::filesystem::path &target);

} // namespace quillon
