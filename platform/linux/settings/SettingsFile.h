#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include <sys/types.h>

namespace quillon {

/// What a look at the file from outside tells; equal stamps mean that it need not be read again.
struct FileStamp
{
    /// The errno of the look, ENOENT for a missing file; the rest holds only when it is 0.
    int error = 0;
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    /// Nanoseconds since 1970.
    std::int64_t modified = 0;
    std::int64_t changed = 0;

    friend bool operator==(const FileStamp &, const FileStamp &) = default;
};

/// Holds the advisory lock that writers take, until the end of its life.
class SettingsLock
{
public:
    explicit SettingsLock(int descriptor) : descriptor_(descriptor) {}
    SettingsLock(SettingsLock &&other) noexcept : descriptor_(std::exchange(other.descriptor_, -1))
    {}
    SettingsLock &operator=(SettingsLock &&) = delete;
    SettingsLock(const SettingsLock &) = delete;
    SettingsLock &operator=(const SettingsLock &) = delete;
    ~SettingsLock();

    bool isHeld() const { return descriptor_ >= 0; }

private:
    friend class SettingsFile;
    int descriptor_;
};

/// The settings file as bytes: read in one piece, replaced as a whole. Safe from every thread.
///
/// A file that is a symbolic link stays one; what it points to is replaced.
class SettingsFile
{
public:
    struct Reading
    {
        /// Taken before the bytes were read.
        FileStamp stamp;
        /// The errno of what kept the bytes from being read; 0 when they were.
        int error = 0;
        QByteArray bytes;
        /// False while the file is so young that another change could leave the stamp as it is.
        bool settled = true;
    };

    explicit SettingsFile(std::string path) : path_(std::move(path)) {}

    const std::string &path() const { return path_; }
    FileStamp stamp() const;
    Reading read() const;

    /// Waits for other writers; makes the folder where it is missing. Not held when that failed,
    /// which has been said on standard error.
    SettingsLock lock() const;
    /// Renames what stands in the file's place to a free name beside it, PATH.bad-TIME, and returns
    /// that name. Absent when that failed, which has been said on standard error. Under lock().
    std::optional<std::string> setAside() const;
    /// Writes the bytes and puts them in the file's place at once. With keepOld what stands there
    /// is first renamed to a free name beside it, PATH.bad-TIME. False when the disk took not all
    /// of it; the file then is as before, and the reason has been said on standard error. Under
    /// lock().
    bool replace(const QByteArray &bytes, bool keepOld) const;
    /// Returns when the file would survive a loss of power; false when that cannot be had.
    bool synchronize() const;
    /// Deletes what killed writers left beside the file more than a minute ago.
    void removeLeftovers() const;

private:
    std::string path_;
};

} // namespace quillon
