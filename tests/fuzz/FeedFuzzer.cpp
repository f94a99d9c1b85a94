// Reads any bytes as a feed, which nobody but the makers can have signed. Then puts any fields, one
// to a line, into a feed: what is read of them are releases with proper versions and https links.

#include "base/Require.h"
#include "platform/linux/updates/UpdateFeed.h"
#include "tests/support/SignedFeed.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdint>

namespace {

using namespace quillon;

/// Returns a feed of items with four fields each.
std::string feedOf(const QByteArray &lines)
{
    QJsonArray items;
    const QList<QByteArray> fields = lines.split('\n');
    for (qsizetype i = 0; i + 3 < fields.size(); i += 4)
        items.append(QJsonObject{{QStringLiteral("version"), QString::fromUtf8(fields[i])},
                                 {QStringLiteral("channel"), QString::fromUtf8(fields[i + 1])},
                                 {QStringLiteral("url"), QString::fromUtf8(fields[i + 2])},
                                 {QStringLiteral("notes"), QString::fromUtf8(fields[i + 3])}});
    return QJsonDocument(QJsonObject{{QStringLiteral("items"), items}}).toJson().toStdString();
}

void checkReleases(const std::vector<FeedRelease> &releases)
{
    for (const FeedRelease &release : releases) {
        const UpdateItem &item = release.item;
        require(item.link.starts_with("https://"), "a link is https");
        require(item.notes.empty() || item.notes.starts_with("https://"), "notes are https");
        require(readVersion(item.version) == release.version, "a version is read as it is shown");
    }
    const FeedRelease *newest = newestUpdate(releases, {1}, true);
    require(!newest || newest->version > VersionNumbers{1}, "an update is newer");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const FeedSigner SIGNER;
    static const std::string KEY = SIGNER.publicKey();
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    require(!signedPart(bytes, KEY), "a signature cannot be made up");
    require(signedPart(SIGNER.sign(bytes), KEY) == bytes, "what is signed comes back to the byte");

    if (const auto releases = readReleases(bytes))
        checkReleases(*releases);
    const auto releases = readReleases(feedOf(QByteArray(bytes.data(), static_cast<int>(size))));
    require(releases.has_value(), "a list of items is a feed");
    checkReleases(*releases);
    return 0;
}
