#include "platform/linux/settings/FileSteps.h"

#include "platform/linux/disk/Descriptor.h"

#include <climits>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr mode_t PRIVATE_FOLDER = 0700;
constexpr std::size_t RANDOM_LETTERS = 6;
/// The seconds that writing a file may take.
constexpr std::time_t LEFTOVER_AGE = 60;
/// The number of names that are tried for a new file.
constexpr int MOST_NAMES = 1000;

bool isUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}

bool isLower(char c)
{
    return c >= 'a' && c <= 'z';
}

/// Returns letters that another process or another call is unlikely to choose.
std::string randomLetters()
{
    static std::atomic<std::uint64_t> calls = 0;
    timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    // The steps of the SplitMix64 generator by Steele, Lea and Flood (2014).
    std::uint64_t state = (static_cast<std::uint64_t>(now.tv_nsec) << 32U) +
                          (static_cast<std::uint64_t>(::getpid()) << 8U) + calls++;
    state = (state ^ (state >> 30U)) * 0xBF58476D1CE4E5B9U;
    state = (state ^ (state >> 27U)) * 0x94D049BB133111EBU;
    state ^= state >> 31U;

    std::string letters(RANDOM_LETTERS, ' ');
    for (char &letter : letters) {
        constexpr std::uint64_t ALPHABET = 26;
        letter = static_cast<char>('a' + state % ALPHABET);
        state /= ALPHABET;
    }
    // isTemporaryName() expects both upper and lower case.
    letters[1 + state % (RANDOM_LETTERS - 1)] += 'A' - 'a';
    return letters;
}

bool writeAll(int descriptor, const QByteArray &bytes)
{
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t count = uninterrupted([&] {
            return ::write(descriptor, bytes.constData() + written,
                           static_cast<std::size_t>(bytes.size() - written));
        });
        if (count < 0)
            return false;
        written += count;
    }
    // Some file systems report that they cannot do it.
    return uninterrupted([&] { return ::fdatasync(descriptor); }) == 0 || errno == EINVAL;
}

/// Writes the bytes to a new file with the first of the names that is free. Returns nothing, with
/// errno set and without a file, when that failed.
template <typename NameOf>
std::optional<fs::path> writeToFreeName(const NameOf &nameOf, const QByteArray &bytes)
{
    constexpr int FLAGS = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    for (int i = 0; i < MOST_NAMES; ++i) {
        fs::path name = nameOf(i);
        const Descriptor file(
            uninterrupted([&] { return ::open(name.c_str(), FLAGS, PRIVATE_FILE); }));
        if (file && writeAll(file.get(), bytes))
            return name;
        const int error = errno;
        if (file)
            ::unlink(name.c_str());
        errno = error;
        if (file || error != EEXIST)
            return std::nullopt;
    }
    return std::nullopt;
}

std::string nameOfCopy(const fs::path &target, std::int64_t time)
{
    return target.string() + ".bad-" + std::to_string(time);
}

} // namespace

std::optional<fs::path> followLinks(fs::path path)
{
    constexpr int MOST_LINKS = 40;
    for (int i = 0; i < MOST_LINKS; ++i) {
        struct stat status = {};
        if (::lstat(path.c_str(), &status) != 0)
            return errno == ENOENT ? std::optional(path) : std::nullopt;
        if (!S_ISLNK(status.st_mode))
            return path;
        std::array<char, PATH_MAX> link = {};
        const ssize_t length = ::readlink(path.c_str(), link.data(), link.size());
        if (length < 0)
            return std::nullopt;
        path = path.parent_path() / std::string(link.data(), static_cast<std::size_t>(length));
    }
    errno = ELOOP;
    return std::nullopt;
}

bool makeFolder(const fs::path &folder)
{
    const auto make = [&] {
        return uninterrupted([&] { return ::mkdir(folder.c_str(), PRIVATE_FOLDER); }) == 0;
    };
    if (make() || errno == EEXIST)
        return true;
    return errno == ENOENT && folder.has_relative_path() && makeFolder(folder.parent_path()) &&
           (make() || errno == EEXIST);
}

std::optional<fs::path> writeBeside(const fs::path &target, const QByteArray &bytes)
{
    return writeToFreeName([&](int) { return target.string() + "." + randomLetters(); }, bytes);
}

std::optional<fs::path> writeCopyBeside(const fs::path &target, const QByteArray &bytes)
{
    const std::int64_t now = std::time(nullptr);
    return writeToFreeName([&](int i) { return nameOfCopy(target, now + i); }, bytes);
}

bool isTemporaryName(std::string_view name, const std::string &target)
{
    if (!name.starts_with(target + ".") || name.size() != target.size() + 1 + RANDOM_LETTERS)
        return false;
    const std::string_view letters = name.substr(target.size() + 1);
    // A word that a person put there, as in "quillon.json.backup", is all in one case or begins
    // with its only capital.
    return std::ranges::all_of(letters, [](char c) { return isUpper(c) || isLower(c); }) &&
           std::ranges::any_of(letters.substr(1), isUpper) && std::ranges::any_of(letters, isLower);
}

void removeLeftovers(const fs::path &target)
{
    const std::time_t oldest = std::time(nullptr) - LEFTOVER_AGE;
    std::error_code error;
    fs::directory_iterator entry(target.parent_path(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path &path = entry->path();
        struct stat status = {};
        if (isTemporaryName(path.filename().string(), target.filename().string()) &&
            ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
            status.st_mtime < oldest)
            ::unlink(path.c_str());
    }
}

Exchange exchange(const fs::path &a, const fs::path &b)
{
    const auto swap = [&] {
        return ::renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE);
    };
    if (uninterrupted(swap) == 0)
        return Exchange::done;
    return errno == EINVAL || errno == ENOSYS ? Exchange::unsupported : Exchange::failed;
}

bool moveToFreeName(const fs::path &file, const fs::path &name)
{
    const auto move = [&] {
        return ::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE);
    };
    if (uninterrupted(move) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // The file system cannot rename and refuse a taken name in one step.
    struct stat status = {};
    if (::lstat(name.c_str(), &status) == 0)
        errno = EEXIST;
    return errno == ENOENT &&
           uninterrupted([&] { return ::rename(file.c_str(), name.c_str()); }) == 0;
}

std::optional<fs::path> moveAside(const fs::path &file, const fs::path &target)
{
    const std::int64_t now = std::time(nullptr);
    for (int i = 0; i < MOST_NAMES; ++i) {
        fs::path name = nameOfCopy(target, now + i);
        if (moveToFreeName(file, name))
            return name;
        if (errno != EEXIST)
            return std::nullopt;
    }
    return std::nullopt;
}

} // namespace quillon
