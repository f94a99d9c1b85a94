#pragma once

#include "base/DefaultsStore.h"
#include "base/Mutex.h"
#include "platform/linux/settings/SettingsFile.h"

#include <QJsonObject>

#include <functional>
#include <optional>
#include <string>

namespace quillon {

/// Returns "$XDG_CONFIG_HOME/quillon/quillon.json". If that variable is not an absolute path,
/// "~/.config" takes its place.
std::string standardDefaultsPath();

/// Keeps the settings as one JSON object in a text file.
///
/// A file with a mistake is never overwritten: what was read last stays in force, the fault is
/// printed once to standard error, and the next write keeps the file beside the new one. If nothing
/// was read before, writes fail until beginAnew(). A file that has become empty counts as one with
/// a mistake. A write waits some 100 ms for somebody who is just saving the file, and fails when
/// the file cannot be read. Keys and values that this program does not know survive its writes.
class JsonDefaultsStore final : public DefaultsStore
{
public:
    /// The path is absolute. Neither the file nor its folder need exist.
    explicit JsonDefaultsStore(std::string path);

    std::optional<DefaultsValue> value(std::string_view key) const override EXCLUDES(mutex_);
    bool set(std::string_view key, const DefaultsValue &value) override;
    /// The value is made of the one on the disk, absent for none. No other process that takes the
    /// lock of the file writes it in between. The last call of `made` counts.
    bool edit(std::string_view key, const Made &made) override;
    bool remove(std::string_view key) override;
    bool removeAll() override;
    bool synchronize() override;
    std::optional<DefaultsFault> fault() const override EXCLUDES(mutex_);
    std::optional<std::string> beginAnew() override EXCLUDES(writing_, mutex_);

private:
    /// The result of one reading of the file.
    struct Look;
    /// Holds what earlier looks at the file say about the next one.
    struct Former
    {
        bool wasThere = false;
        /// The last stamp that was trusted.
        std::optional<FileStamp> settled;
        /// The bytes that were last parsed, or written, and what they hold. Without bytes, nothing.
        QByteArray bytes;
        QJsonObject contents;
    };
    /// Edits the contents and returns whether it changed anything.
    using Edit = std::function<bool(QJsonObject &contents)>;
    bool change(const Edit &edit) EXCLUDES(writing_, mutex_);
    bool changeOnDisk(const Edit &edit) REQUIRES(writing_) EXCLUDES(mutex_);
    SettingsFile::Replacing changeOnce(const Edit &edit, bool heedsOpenFile) REQUIRES(writing_)
        EXCLUDES(mutex_);
    Former former() const REQUIRES(mutex_);
    bool isOnDisk(const Edit &edit) const EXCLUDES(mutex_);

    Look look(const Former &former) const;
    Look lookWhenWritten(const Former &former) const;
    void refresh() const REQUIRES(mutex_);
    void adopt(Look found) const REQUIRES(mutex_);
    void complainOnce() const REQUIRES(mutex_);

    const SettingsFile file_;
    /// It is held for the length of a write. Readers take another mutex, so that they wait for no
    /// disk.
    Mutex writing_;
    mutable Mutex mutex_;
    /// The contents that were last read, or written, without a fault.
    mutable QJsonObject contents_ GUARDED_BY(mutex_);
    /// The bytes of contents_, so that they are not parsed twice.
    mutable QByteArray bytes_ GUARDED_BY(mutex_);
    /// The stamp of the file as last read. It proves nothing unless isStampTrusted_.
    mutable FileStamp stamp_ GUARDED_BY(mutex_);
    mutable bool isStampTrusted_ GUARDED_BY(mutex_) = false;
    /// The last stamp that was trusted.
    mutable std::optional<FileStamp> settled_ GUARDED_BY(mutex_);
    /// The fault of the file on the disk. While there is one, contents_ is older than that file.
    mutable std::optional<DefaultsFault> fault_ GUARDED_BY(mutex_);
    /// True once a file without a fault, or no file, was found.
    mutable bool hasRead_ GUARDED_BY(mutex_) = false;
    mutable std::optional<FileStamp> complained_ GUARDED_BY(mutex_);
};

} // namespace quillon
