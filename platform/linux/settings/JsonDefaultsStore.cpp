#include "platform/linux/settings/JsonDefaultsStore.h"

#include "base/JsonValues.h"
#include "platform/linux/disk/UserFolders.h"

#include <QJsonDocument>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include <unistd.h>

// A read costs a stat() and a lookup in the document. A write locks the file against other
// writers, reads it again if it changed, puts its one key in and replaces the file; so the writes
// of two processes to different keys both last. An editor takes no lock: it can still overwrite
// what was written while it had the file open.

namespace quillon {
namespace {

QJsonValue lookUp(const QJsonObject &contents, std::string_view key)
{
    const bool ascii = std::ranges::all_of(key, [](char c) { return (c & 0x80) == 0; });
    if (ascii) // Without a string of its own.
        return contents.value(QLatin1StringView(key.data(), static_cast<qsizetype>(key.size())));
    return contents.value(bytesToText(key));
}

/// Where the parser stumbled, and over what.
DefaultsFault describe(const QByteArray &bytes, const QJsonParseError &error)
{
    // The parser stands behind the character that it stumbled over.
    const qsizetype offset = std::clamp<qsizetype>(error.offset - 1, 0, bytes.size());
    const std::string_view before(bytes.constData(), static_cast<std::size_t>(offset));
    const std::string_view line = before.substr(before.rfind('\n') + 1); // npos + 1 is 0
    const auto startsCharacter = [](char c) { return (c & 0xC0) != 0x80; };
    return {.line = static_cast<int>(std::ranges::count(before, '\n')) + 1,
            .column = static_cast<int>(std::ranges::count_if(line, startsCharacter)) + 1,
            .reason = error.errorString().toStdString()};
}

/// The object that the bytes hold; absent with the fault set when they hold none.
std::optional<QJsonObject> parse(const QByteArray &bytes, DefaultsFault &fault)
{
    if (bytes.trimmed().isEmpty())
        return QJsonObject();
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

} // namespace

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
    refresh();
    return kept;
}

bool JsonDefaultsStore::change(const Edit &edit)
{
    const MutexLock writing(writing_);
    if (isOnDisk(edit))
        return true;
    const SettingsLock fileLock = file_.lock();
    if (!fileLock.isHeld())
        return false;
    QJsonObject contents;
    QByteArray bytes;
    bool faulty = false;
    {
        const MutexLock lock(mutex_);
        refresh();
        if (fault_ && fault_->nothingRead)
            return false;
        contents = contents_;
        faulty = fault_.has_value();
        if (!edit(contents) && !faulty)
            return true;
        bytes = QJsonDocument(contents).toJson();
    }
    if (!file_.replace(bytes, faulty))
        return false;

    // The next look reads the file again: someone who takes no lock may have been faster.
    const MutexLock lock(mutex_);
    contents_ = std::move(contents);
    fault_.reset();
    settled_ = false;
    return true;
}

/// True when the edit would leave the file as it is.
bool JsonDefaultsStore::isOnDisk(const Edit &edit) const
{
    const MutexLock lock(mutex_);
    refresh();
    QJsonObject contents = contents_;
    return !edit(contents) && !fault_;
}

void JsonDefaultsStore::refresh() const
{
    if (settled_ && file_.stamp() == stamp_)
        return;
    const SettingsFile::Reading reading = file_.read();
    stamp_ = reading.stamp;
    settled_ = reading.settled;
    DefaultsFault fault{.reason = reading.error == 0 ? "" : std::strerror(reading.error)};
    auto contents = reading.error == 0 ? parse(reading.bytes, fault) : std::nullopt;
    if (reading.error == ENOENT)
        contents = QJsonObject();
    if (contents) {
        contents_ = std::move(*contents);
        hasRead_ = true;
        fault_.reset();
        return;
    }
    fault.file = file_.path();
    fault.nothingRead = !hasRead_;
    fault_ = std::move(fault);
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
