#pragma once

#include "platform/linux/disk/Descriptor.h"

#include <QByteArray>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include <sys/types.h>

namespace quillon {

/// What stat(2) reports about the file; equal stamps mean that it need not be read again.
struct FileStamp
{
    /// The errno of the call, ENOENT for a missing file. The other fields hold only when it is 0.
    int error = 0;
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    /// The time of the last change, in nanoseconds since 1970.
    std::int64_t modified = 0;
    std::int64_t changed = 0;

    friend bool operator==(const FileStamp &, const FileStamp &) = default;
};

/// Holds the advisory lock that writers take, until the end of its life.
class SettingsLock
{
public:
    explicit SettingsLock(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

    bool isHeld() const { return static_cast<bool>(descriptor_); }

private:
    Descriptor descriptor_;
};

/// The settings file as bytes: read in one piece, replaced as a whole. Safe from every thread.
///
/// A file that is a symbolic link stays one; what it points to is replaced. No call waits for ever
/// because of signals.
class SettingsFile
{
public:
    struct Reading
    {
        /// The stamp was taken before the bytes were read.
        FileStamp stamp;
        /// The errno of the call that failed; 0 when all bytes were read.
        int error = 0;
        QByteArray bytes;
        /// False while the file is so young that another change could leave the stamp as it is.
        bool isTrusted = true;
        /// False while somebody may be in the middle of writing the file in place.
        bool rested = true;
    };

    enum class Replacing
    {
        done,
        /// The file is as before. The reason was printed to standard error.
        failed,
        /// Somebody who takes no lock has written the file since it was read. Their file is in
        /// place.
        overtaken,
    };

    /// An editor that writes in place empties the file and fills it again within this time, in
    /// milliseconds.
    static constexpr int WRITING_TIME = 100;

    explicit SettingsFile(std::string path) : path_(std::move(path)) {}

    const std::string &path() const { return path_; }
    FileStamp stamp() const;
    Reading read() const;

    /// Waits for other writers, and makes the folder if it is missing. If that fails, prints the
    /// reason to standard error and returns a lock that is not held.
    SettingsLock lock() const;
    /// Renames what is in the file's place to a free name beside it, PATH.bad-TIME, and returns
    /// that name. Returns nothing when that failed, and prints the reason to standard error. The
    /// caller holds lock().
    std::optional<std::string> setAside() const;
    /// Writes the bytes and puts them, in one step, in the place of the file as read() found it
    /// with an error of 0 or ENOENT. With keepCopy, keeps a copy of the bytes found under a name as
    /// setAside() chooses, and prints that name to standard error. The caller holds lock().
    /// With heedsOpenFile, somebody who has the file open for writing counts as having written it.
    Replacing replace(const QByteArray &bytes, const Reading &found, bool keepCopy,
                      bool heedsOpenFile) const;
    /// Returns true when the file would survive a loss of power, and false when that cannot be
    /// ensured.
    bool synchronize() const;
    /// Deletes what killed writers left beside the file more than a minute ago.
    void removeLeftovers() const;

private:
    class NewFile;
    Replacing putInPlace(NewFile &fresh, const std::filesystem::path &target, const Reading &found,
                         bool heedsOpenFile) const;
    Replacing fail(const char *what) const;

    std::string path_;
};

} // namespace quillon
