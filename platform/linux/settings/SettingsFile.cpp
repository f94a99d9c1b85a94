#include "platform/linux/settings/SettingsFile.h"

#include "platform/linux/settings/FileSteps.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

// A replacement must lose neither the settings of an editor that saves at the same time, as editors
// take no lock, nor the file when a call fails. So the new file is written beside the old one, and
// the two exchange their names in one step. The file that then has the name of the new one is
// compared with what was read before. If it differs, somebody saved in between, and the names are
// exchanged back as though nothing had been written. An editor that saves in place and has emptied
// the old file is noticed in the same way. One that has opened the old file and not emptied it yet
// is noticed since the kernel gives no lease on a file that is open for writing. Where the file
// system cannot exchange names, the new file takes the old one's place, and a save within those
// microseconds is overwritten.

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t NANOSECONDS = 1'000'000'000;
/// The time stamps of files advance with the kernel's tick. This is the longest tick, in
/// nanoseconds.
constexpr std::int64_t TICK = 20'000'000;
constexpr std::int64_t WRITING = SettingsFile::WRITING_TIME * std::int64_t{1'000'000};

std::int64_t inNanoseconds(const timespec &time)
{
    return time.tv_sec * NANOSECONDS + time.tv_nsec;
}

/// Reads the clock that stamps files.
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

bool flushToDisk(const fs::path &path, int flags)
{
    const Descriptor descriptor(
        uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags); }));
    if (!descriptor)
        return errno == ENOENT;
    // Some file systems report that they cannot do it for a folder.
    return uninterrupted([&] { return ::fsync(descriptor.get()); }) == 0 || errno == EINVAL;
}

/// Returns true when somebody has the file open for writing, or when the file system gives no
/// leases on files that nobody has open.
bool isOpenForWriting(const fs::path &path)
{
    const Descriptor file(
        uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    // Who opens the file for writing meanwhile waits until it is closed here, and the kernel sends
    // a signal. SIGIO would end the program, SIGURG is ignored.
    return file && ::fcntl(file.get(), F_SETSIG, SIGURG) == 0 &&
           ::fcntl(file.get(), F_SETLEASE, F_RDLCK) != 0 && errno == EAGAIN;
}

/// Waits for the lock. On file systems without locks, files are written without one.
bool waitFor(int descriptor)
{
    return uninterrupted([&] { return ::flock(descriptor, LOCK_EX); }) == 0 || errno == ENOLCK ||
           errno == ENOSYS || errno == EOPNOTSUPP;
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
        const ssize_t count = uninterrupted([&] {
            return ::read(descriptor, bytes.data() + length,
                          static_cast<std::size_t>(bytes.size() - length));
        });
        if (count < 0)
            return errno;
        length += count;
        if (count == 0) {
            bytes.truncate(length);
            return 0;
        }
    }
}

} // namespace

/// A file that is written beside the settings and deleted in the end, unless it is to stay.
class SettingsFile::NewFile
{
public:
    explicit NewFile(std::optional<fs::path> name) : name_(std::move(name)) {}
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;
    ~NewFile()
    {
        if (name_)
            ::unlink(name_->c_str());
    }

    /// Returns false when the file could not be written.
    explicit operator bool() const { return name_.has_value(); }
    const fs::path &name() const { return *name_; }
    void stay() { name_.reset(); }

private:
    std::optional<fs::path> name_;
};

FileStamp SettingsFile::stamp() const
{
    struct stat status = {};
    if (::stat(path_.c_str(), &status) != 0)
        return {.error = errno};
    return stampOf(status);
}

SettingsFile::Reading SettingsFile::read() const
{
    // Opening must not block, whatever is at the path.
    constexpr int FLAGS = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    Reading reading;
    const std::int64_t now = fileClock();
    const Descriptor file(uninterrupted([&] { return ::open(path_.c_str(), FLAGS); }));
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        reading.error = errno;
        reading.stamp = stamp();
        // Unless both calls failed alike, the file changed between them or may change unnoticed.
        reading.isTrusted = reading.stamp.error == reading.error;
        return reading;
    }
    reading.stamp = stampOf(status);
    reading.error = readAll(file.get(), status, reading.bytes);
    reading.isTrusted = reading.error == 0 && reading.stamp.changed + TICK < now;
    // The clock may have been set back since the file was written.
    reading.rested = std::abs(now - reading.stamp.changed) > WRITING;
    return reading;
}

SettingsLock SettingsFile::lock() const
{
    const fs::path folder = fs::path(path_).parent_path();
    if (!makeFolder(folder)) {
        complain(folder, "cannot make the folder", std::strerror(errno));
        return SettingsLock(Descriptor());
    }
    const std::string name = path_ + ".lock";
    Descriptor file(uninterrupted(
        [&] { return ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, PRIVATE_FILE); }));
    if (!file || !waitFor(file.get())) {
        complain(name, "cannot lock the settings", std::strerror(errno));
        return SettingsLock(Descriptor());
    }
    return SettingsLock(std::move(file));
}

std::optional<std::string> SettingsFile::setAside() const
{
    const auto target = followLinks(path_);
    const auto kept = target ? moveAside(*target, *target) : std::nullopt;
    if (!kept) {
        complain(path_, "cannot rename the settings file", std::strerror(errno));
        return std::nullopt;
    }
    return kept->string();
}

SettingsFile::Replacing SettingsFile::replace(const QByteArray &bytes, const Reading &found,
                                              bool keepCopy, bool heedsOpenFile) const
{
    const auto target = followLinks(path_);
    NewFile fresh(target ? writeBeside(*target, bytes) : std::nullopt);
    if (!fresh)
        return fail("cannot write the settings");
    NewFile copy(keepCopy ? writeCopyBeside(*target, found.bytes) : std::nullopt);
    if (keepCopy && !copy)
        return fail("cannot keep a copy of the file with the mistake");
    // Some file systems refuse a lease on every file.
    const bool heeds = heedsOpenFile && !isOpenForWriting(fresh.name());
    const Replacing outcome = putInPlace(fresh, *target, found, heeds);
    if (outcome == Replacing::done && copy) {
        complain(path_, "the file with the mistake is kept as", copy.name());
        copy.stay();
    }
    return outcome;
}

SettingsFile::Replacing SettingsFile::putInPlace(NewFile &fresh, const fs::path &target,
                                                 const Reading &found, bool heedsOpenFile) const
{
    const auto exchanged =
        found.error == ENOENT ? Exchange::unsupported : exchange(fresh.name(), target);
    if (exchanged == Exchange::failed)
        return errno == ENOENT ? Replacing::overtaken : fail("cannot write the settings");
    if (exchanged == Exchange::unsupported) {
        if (stamp() != found.stamp)
            return Replacing::overtaken;
        const bool isInPlace = found.error == ENOENT
                                   ? moveToFreeName(fresh.name(), target)
                                   : uninterrupted([&] {
                                         return ::rename(fresh.name().c_str(), target.c_str());
                                     }) == 0;
        return isInPlace         ? Replacing::done
               : errno == EEXIST ? Replacing::overtaken
                                 : fail("cannot write the settings");
    }

    // The old file now has the name of the new one.
    const Reading old = SettingsFile(fresh.name()).read();
    if (old.error == 0 && old.bytes == found.bytes &&
        !(heedsOpenFile && isOpenForWriting(fresh.name())))
        return Replacing::done;
    if (exchange(fresh.name(), target) == Exchange::done) {
        errno = old.error;
        return old.error == 0 ? Replacing::overtaken : fail("cannot write the settings");
    }
    // The new file stays in place, so the old one gets a name that nobody cleans up.
    const auto kept = moveAside(fresh.name(), target);
    complain(path_, "the former file is kept as", kept.value_or(fresh.name()));
    fresh.stay();
    return Replacing::done;
}

/// Prints what failed, with the reason from errno.
SettingsFile::Replacing SettingsFile::fail(const char *what) const
{
    complain(path_, what, std::strerror(errno));
    return Replacing::failed;
}

bool SettingsFile::synchronize() const
{
    const auto target = followLinks(path_);
    if (!target)
        return false;
    const fs::path folder = target->parent_path();
    return flushToDisk(*target, 0) && flushToDisk(folder, O_DIRECTORY) &&
           flushToDisk(folder.parent_path(), O_DIRECTORY);
}

void SettingsFile::removeLeftovers() const
{
    if (const auto target = followLinks(path_))
        quillon::removeLeftovers(*target);
}

} // namespace quillon
