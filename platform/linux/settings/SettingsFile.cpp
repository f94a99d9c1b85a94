#include "platform/linux/settings/SettingsFile.h"

#include <QFile>
#include <QSaveFile>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t NANOSECONDS = 1'000'000'000;
/// Time stamps of files advance with the kernel's tick, at most this far apart.
constexpr std::int64_t TICK = 20'000'000;
constexpr std::int64_t LEFTOVER_AGE = 60 * NANOSECONDS;
constexpr mode_t PRIVATE_FOLDER = 0700;
constexpr mode_t PRIVATE_FILE = 0600;

class Descriptor
{
public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }
    int get() const { return descriptor_; }
    bool isOpen() const { return descriptor_ >= 0; }

private:
    int descriptor_;
};

std::int64_t inNanoseconds(const timespec &time)
{
    return time.tv_sec * NANOSECONDS + time.tv_nsec;
}

/// The clock that stamps files.
std::int64_t fileClock()
{
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return inNanoseconds(now);
}

FileStamp stampOf(const struct stat &status)
{
    return {.device = status.st_dev,
            .inode = status.st_ino,
            .size = status.st_size,
            .modified = inNanoseconds(status.st_mtim),
            .changed = inNanoseconds(status.st_ctim)};
}

void complain(const std::string &path, const char *what, const std::string &reason)
{
    std::fprintf(stderr, "quillon: %s: %s: %s\n", path.c_str(), what, reason.c_str());
}

/// What the path leads to when the links at its end are followed, whether or not it is there.
fs::path followLinks(fs::path path)
{
    constexpr int MOST_LINKS = 40;
    std::error_code error;
    for (int i = 0; i < MOST_LINKS && fs::is_symlink(path, error); ++i)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

bool makeFolder(const fs::path &folder)
{
    const auto make = [&] { return ::mkdir(folder.c_str(), PRIVATE_FOLDER) == 0; };
    if (make() || errno == EEXIST)
        return true;
    return errno == ENOENT && folder.has_relative_path() && makeFolder(folder.parent_path()) &&
           (make() || errno == EEXIST);
}

/// Renames the file to a free name beside it and returns that.
std::optional<fs::path> moveAside(const fs::path &file, std::string &reason)
{
    std::error_code error;
    std::int64_t time = std::time(nullptr);
    const auto name = [&] { return fs::path(file.string() + ".bad-" + std::to_string(time)); };
    while (fs::exists(fs::symlink_status(name(), error)))
        ++time;
    fs::rename(file, name(), error);
    reason = error.message();
    return error ? std::nullopt : std::optional(name());
}

bool save(const fs::path &target, const QByteArray &bytes, std::string &reason)
{
    const QString name = QFile::decodeName(target.c_str());
    if (QFile::encodeName(name) != target.c_str()) {
        reason = "the path is not UTF-8";
        return false;
    }
    QSaveFile file(name);
    // A short write is no error to the file itself and would be put in place: both are checked.
    const bool saved = file.open(QIODevice::WriteOnly) &&
                       file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) &&
                       file.write(bytes) == bytes.size() && file.flush() && file.commit();
    if (!saved)
        reason = file.error() == QFileDevice::NoError ? "the disk took not all of it"
                                                      : file.errorString().toStdString();
    return saved;
}

bool flushToDisk(const fs::path &path, int flags)
{
    const Descriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags));
    if (!descriptor.isOpen())
        return errno == ENOENT;
    // Some file systems cannot do it for a folder and say so.
    return ::fsync(descriptor.get()) == 0 || errno == EINVAL;
}

/// Waits for the lock. File systems that have none are written without.
bool waitFor(int descriptor)
{
    while (::flock(descriptor, LOCK_EX) != 0)
        if (errno != EINTR)
            return errno == ENOLCK || errno == ENOSYS || errno == EOPNOTSUPP;
    return true;
}

/// Returns the errno of what failed, 0 when all bytes were read.
int readAll(int descriptor, const struct stat &status, QByteArray &bytes)
{
    constexpr qsizetype MORE = 4096;
    if (!S_ISREG(status.st_mode))
        return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    qsizetype length = 0;
    bytes.resize(static_cast<qsizetype>(status.st_size));
    for (;;) {
        if (length == bytes.size())
            bytes.resize(length + MORE);
        const ssize_t count = ::read(descriptor, bytes.data() + length,
                                     static_cast<std::size_t>(bytes.size() - length));
        if (count == 0) {
            bytes.truncate(length);
            return 0;
        }
        if (count < 0 && errno != EINTR)
            return errno;
        length += std::max<ssize_t>(count, 0);
    }
}

/// True for a name that QSaveFile makes, six random letters. A word that a person put there, as in
/// "quillon.json.backup", is not to be mistaken for one: upper and lower case must be mixed.
bool isTemporaryName(std::string_view name, const std::string &file)
{
    constexpr std::size_t RANDOM_LETTERS = 6;
    if (!name.starts_with(file + ".") || name.size() != file.size() + 1 + RANDOM_LETTERS)
        return false;
    const std::string_view letters = name.substr(file.size() + 1);
    const auto isUpper = [](char c) { return c >= 'A' && c <= 'Z'; };
    const auto isLower = [](char c) { return c >= 'a' && c <= 'z'; };
    return std::ranges::all_of(letters, [&](char c) { return isUpper(c) || isLower(c); }) &&
           std::ranges::any_of(letters.substr(1), isUpper) && std::ranges::any_of(letters, isLower);
}

} // namespace

SettingsLock::~SettingsLock()
{
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

FileStamp SettingsFile::stamp() const
{
    struct stat status = {};
    if (::stat(path_.c_str(), &status) != 0)
        return {.error = errno};
    return stampOf(status);
}

SettingsFile::Reading SettingsFile::read() const
{
    Reading reading;
    const std::int64_t now = fileClock();
    // Whatever stands there, opening it must not wait.
    const Descriptor file(::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        reading.error = errno;
        reading.stamp = stamp();
        // Unless both looks failed alike, something changed between them or may do so unseen.
        reading.settled = reading.stamp.error == reading.error;
        return reading;
    }
    reading.stamp = stampOf(status);
    reading.error = readAll(file.get(), status, reading.bytes);
    reading.settled = reading.error == 0 && reading.stamp.changed + TICK < now;
    return reading;
}

SettingsLock SettingsFile::lock() const
{
    const fs::path folder = fs::path(path_).parent_path();
    if (!makeFolder(folder)) {
        complain(folder, "cannot make the folder", std::strerror(errno));
        return SettingsLock(-1);
    }
    const std::string name = path_ + ".lock";
    SettingsLock lock(::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, PRIVATE_FILE));
    if (!lock.isHeld() || !waitFor(lock.descriptor_)) {
        complain(name, "cannot lock the settings", std::strerror(errno));
        return SettingsLock(-1);
    }
    return lock;
}

std::optional<std::string> SettingsFile::setAside() const
{
    std::string reason;
    const auto kept = moveAside(followLinks(path_), reason);
    if (!kept) {
        complain(path_, "cannot rename the settings file", reason);
        return std::nullopt;
    }
    return kept->string();
}

bool SettingsFile::replace(const QByteArray &bytes, bool keepOld) const
{
    const fs::path target = followLinks(path_);
    std::optional<fs::path> kept;
    std::string reason;
    if (keepOld) {
        kept = moveAside(target, reason);
        if (!kept) {
            complain(path_, "cannot keep the file that cannot be read", reason);
            return false;
        }
    }
    if (save(target, bytes, reason)) {
        if (kept)
            complain(path_, "the file that could not be read is kept as", *kept);
        return true;
    }
    complain(path_, "cannot write the settings", reason);
    std::error_code error;
    if (kept && !fs::exists(fs::symlink_status(target, error)))
        fs::rename(*kept, target, error);
    return false;
}

bool SettingsFile::synchronize() const
{
    const fs::path target = followLinks(path_);
    const fs::path folder = target.parent_path();
    return flushToDisk(target, 0) && flushToDisk(folder, O_DIRECTORY) &&
           flushToDisk(folder.parent_path(), O_DIRECTORY);
}

void SettingsFile::removeLeftovers() const
{
    const fs::path target = followLinks(path_);
    const std::int64_t oldest = fileClock() - LEFTOVER_AGE;
    std::error_code error;
    fs::directory_iterator entry(target.parent_path(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path &path = entry->path();
        struct stat status = {};
        if (isTemporaryName(path.filename().string(), target.filename().string()) &&
            ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
            inNanoseconds(status.st_mtim) < oldest)
            ::unlink(path.c_str());
    }
}

} // namespace quillon
