#include "platform/linux/settings/JsonDefaultsStore.h"

#include "base/JsonValues.h"
#include "platform/linux/disk/UserFolders.h"

#include <QJsonDocument>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include <poll.h>

// A read costs a stat() and a lookup in the document. A write locks the file against other writers,
// reads it again, puts its one key in and replaces the file. So the writes of two processes to
// different keys both last. An editor takes no lock. While an editor is writing the file, which is
// then empty or cut short, we wait. If it saved the file while we wrote ours, its file is put back
// and our key goes into that one. What an editor saves later, from what it read before, still
// overwrites our key.

namespace quillon {
namespace {

QJsonValue lookUp(const QJsonObject &contents, std::string_view key)
{
    const bool ascii = std::ranges::all_of(key, [](char c) { return (c & 0x80) == 0; });
    if (ascii) // Without a string of its own.
        return contents.value(QLatin1StringView(key.data(), static_cast<qsizetype>(key.size())));
    return contents.value(bytesToText(key));
}

/// Describes where the parser failed, and at what.
DefaultsFault describe(const QByteArray &bytes, const QJsonParseError &error)
{
    // The parser's position is behind the character at which it failed.
    const qsizetype offset = std::clamp<qsizetype>(error.offset - 1, 0, bytes.size());
    const std::string_view before(bytes.constData(), static_cast<std::size_t>(offset));
    const std::string_view line = before.substr(before.rfind('\n') + 1); // npos + 1 is 0
    const auto startsCharacter = [](char c) { return (c & 0xC0) != 0x80; };
    return {.line = static_cast<int>(std::ranges::count(before, '\n')) + 1,
            .column = static_cast<int>(std::ranges::count_if(line, startsCharacter)) + 1,
            .reason = error.errorString().toStdString()};
}

/// Returns the object that the bytes hold. Returns nothing, with the fault set, when they hold
/// none.
std::optional<QJsonObject> parse(const QByteArray &bytes, DefaultsFault &fault)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        fault = describe(bytes, error);
        return std::nullopt;
    }
    if (!document.isObject()) {
        fault = {.line = 1, .column = 1, .reason = "not an object in braces"};
        return std::nullopt;
    }
    return document.object();
}

bool isBlank(const QByteArray &bytes)
{
    return bytes.trimmed().isEmpty();
}

/// Waits for a moment, which a signal may shorten.
void pause()
{
    constexpr int PAUSE = 5; // milliseconds
    ::poll(nullptr, 0, PAUSE);
}

} // namespace

struct JsonDefaultsStore::Look
{
    SettingsFile::Reading reading;
    /// They are absent when there is a fault.
    std::optional<QJsonObject> contents;
    DefaultsFault fault;
    /// True when the file has another length but did not change since. A file system that cuts a
    /// file short changes the length first, then the time of modification, then the time of change.
    bool isBeingCut = false;

    bool isBlank() const { return reading.error == 0 && quillon::isBlank(reading.bytes); }
    /// Returns true for an empty or incomplete file that somebody may be writing just now.
    bool isUnfinished() const
    {
        return reading.error == 0 && (!contents || isBlank()) && (!reading.rested || isBeingCut);
    }
};

std::string standardDefaultsPath()
{
    return userFolder("XDG_CONFIG_HOME", "/.config") + "/quillon/quillon.json";
}

JsonDefaultsStore::JsonDefaultsStore(std::string path) : file_(std::move(path))
{
    file_.removeLeftovers();
}

std::optional<DefaultsValue> JsonDefaultsStore::value(std::string_view key) const
{
    const MutexLock lock(mutex_);
    refresh();
    return fromJson(lookUp(contents_, key));
}

bool JsonDefaultsStore::set(std::string_view key, const DefaultsValue &value)
{
    const QString name = bytesToText(key);
    const QJsonValue json = toJson(value);
    return change([&](QJsonObject &contents) {
        if (contents.value(name) == json)
            return false;
        contents.insert(name, json);
        return true;
    });
}

bool JsonDefaultsStore::edit(std::string_view key, const Made &made)
{
    const MutexLock writing(writing_);
    return changeOnDisk([name = bytesToText(key), key, &made](QJsonObject &contents) {
        contents.insert(name, toJson(made(fromJson(lookUp(contents, key)))));
        return true;
    });
}

bool JsonDefaultsStore::remove(std::string_view key)
{
    if (!contains(key))
        return true;
    return change([name = bytesToText(key)](QJsonObject &contents) {
        const bool found = contents.contains(name);
        contents.remove(name);
        return found;
    });
}

bool JsonDefaultsStore::removeAll()
{
    return change(
        [](QJsonObject &contents) { return !std::exchange(contents, QJsonObject()).isEmpty(); });
}

bool JsonDefaultsStore::synchronize()
{
    return file_.synchronize();
}

std::optional<DefaultsFault> JsonDefaultsStore::fault() const
{
    const MutexLock lock(mutex_);
    refresh();
    return fault_;
}

std::optional<std::string> JsonDefaultsStore::beginAnew()
{
    const MutexLock writing(writing_);
    const SettingsLock fileLock = file_.lock();
    if (!fileLock.isHeld())
        return std::nullopt;
    const MutexLock lock(mutex_);
    refresh();
    if (!fault_)
        return std::string();
    auto kept = file_.setAside();
    if (!kept)
        return std::nullopt;
    contents_ = QJsonObject();
    bytes_.clear();
    refresh();
    return kept;
}

bool JsonDefaultsStore::change(const Edit &edit)
{
    const MutexLock writing(writing_);
    return isOnDisk(edit) || changeOnDisk(edit);
}

bool JsonDefaultsStore::changeOnDisk(const Edit &edit)
{
    constexpr int MOST_ROUNDS = 20;
    const SettingsLock fileLock = file_.lock();
    if (!fileLock.isHeld())
        return false;
    auto outcome = SettingsFile::Replacing::overtaken;
    for (int i = 1; outcome == SettingsFile::Replacing::overtaken && i <= MOST_ROUNDS; ++i) {
        if (i > 1)
            pause();
        // Somebody who has had the file open for all that time may keep it open.
        outcome = changeOnce(edit, i < MOST_ROUNDS);
    }
    if (outcome == SettingsFile::Replacing::overtaken)
        std::fprintf(stderr, "quillon: %s: cannot write the settings: somebody else writes them\n",
                     file_.path().c_str());
    return outcome == SettingsFile::Replacing::done;
}

/// Reads the file, edits the settings and replaces the file as SettingsFile::replace() does. The
/// caller holds the lock of the file.
SettingsFile::Replacing JsonDefaultsStore::changeOnce(const Edit &edit, bool heedsOpenFile)
{
    Former known;
    {
        const MutexLock lock(mutex_);
        known = former();
    }
    Look found = lookWhenWritten(known);
    const SettingsFile::Reading reading = found.reading;
    QJsonObject contents;
    bool isKept = false;
    {
        const MutexLock lock(mutex_);
        adopt(std::move(found));
        const bool isReadable = reading.error == 0 || reading.error == ENOENT;
        if (fault_ && (!isReadable || fault_->nothingRead)) {
            std::fprintf(stderr, "quillon: %s; nothing is written\n",
                         fault_->description().c_str());
            return SettingsFile::Replacing::failed;
        }
        contents = contents_;
        isKept = fault_.has_value();
    }
    if (!edit(contents) && !isKept)
        return SettingsFile::Replacing::done;
    const QByteArray bytes = QJsonDocument(contents).toJson();
    const auto outcome = file_.replace(bytes, reading, isKept, heedsOpenFile);
    if (outcome != SettingsFile::Replacing::done)
        return outcome;

    // The next look reads the file again, since someone who takes no lock may have been faster.
    const MutexLock lock(mutex_);
    contents_ = std::move(contents);
    bytes_ = bytes;
    fault_.reset();
    isStampTrusted_ = false;
    return outcome;
}

JsonDefaultsStore::Former JsonDefaultsStore::former() const
{
    return {.wasThere = hasRead_ && stamp_.error == 0,
            .settled = settled_,
            .bytes = bytes_,
            .contents = contents_};
}

/// Returns true when the edit would leave the file as it is.
bool JsonDefaultsStore::isOnDisk(const Edit &edit) const
{
    const MutexLock lock(mutex_);
    refresh();
    QJsonObject contents = contents_;
    return !edit(contents) && !fault_;
}

JsonDefaultsStore::Look JsonDefaultsStore::look(const Former &former) const
{
    Look found{.reading = file_.read(), .contents = std::nullopt, .fault = {}};
    if (FileStamp stamp = found.reading.stamp; former.settled && stamp != former.settled) {
        stamp.size = former.settled->size;
        stamp.modified = former.settled->modified;
        found.isBeingCut = stamp == former.settled;
    }
    if (const QByteArray &bytes = found.reading.bytes; found.reading.error == 0)
        found.contents = !bytes.isEmpty() && bytes == former.bytes ? std::optional(former.contents)
                                                                   : parse(bytes, found.fault);
    else if (found.reading.error == ENOENT)
        found.contents = QJsonObject();
    else
        found.fault.reason = std::strerror(found.reading.error);
    return found;
}

/// Does what look() does, but waits for somebody who seems to be saving the file. A file that
/// existed and is gone is waited for too, since some editors rename it before they write a new one.
JsonDefaultsStore::Look JsonDefaultsStore::lookWhenWritten(const Former &former) const
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds WRITING_TIME{SettingsFile::WRITING_TIME};
    constexpr int MOST_WRITING_TIMES = 20; // for a file that is written again and again
    const auto start = Clock::now();
    for (;;) {
        Look found = look(former);
        const auto waited = Clock::now() - start;
        const bool isAway =
            former.wasThere && found.reading.error == ENOENT && waited < WRITING_TIME;
        if (!(isAway || found.isUnfinished()) || waited > MOST_WRITING_TIMES * WRITING_TIME)
            return found;
        pause();
    }
}

void JsonDefaultsStore::refresh() const
{
    if (isStampTrusted_ && file_.stamp() == stamp_)
        return;
    // Before anything was read, nothing could stay in force during the wait.
    adopt(hasRead_ ? look(former()) : lookWhenWritten({}));
}

void JsonDefaultsStore::adopt(Look found) const
{
    stamp_ = found.reading.stamp;
    isStampTrusted_ = found.reading.isTrusted && !found.isUnfinished();
    if (isStampTrusted_)
        settled_ = stamp_;
    if (found.isBlank()) {
        // When there are no settings to lose, an empty file counts as one without keys.
        found.contents = contents_.isEmpty() ? std::optional(QJsonObject()) : std::nullopt;
        found.fault = {.line = 1, .column = 1, .reason = "the file is empty"};
    }
    if (found.contents) {
        contents_ = std::move(*found.contents);
        bytes_ = found.reading.bytes;
        hasRead_ = true;
        fault_.reset();
        return;
    }
    fault_ = std::move(found.fault);
    fault_->file = file_.path();
    fault_->nothingRead = !hasRead_;
    if (!found.isUnfinished())
        complainOnce();
}

void JsonDefaultsStore::complainOnce() const
{
    if (complained_ == stamp_)
        return;
    complained_ = stamp_;
    std::fprintf(stderr, "quillon: %s; %s\n", fault_->description().c_str(),
                 fault_->nothingRead ? "no settings were read"
                                     : "the settings read last stay in force");
}

} // namespace quillon
