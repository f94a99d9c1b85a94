#include "platform/linux/updates/UpdateFeed.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <QVersionNumber>

#include <algorithm>
#include <array>

#include <sodium.h>

namespace quillon {

namespace {

template <std::size_t SIZE>
using Bytes = std::array<unsigned char, SIZE>;

/// Returns the bytes, or nothing unless the text is base64 of exactly this many bytes.
template <std::size_t SIZE>
std::optional<Bytes<SIZE>> fromBase64(std::string_view text)
{
    Bytes<SIZE> bytes{};
    std::size_t size = 0;
    const int result = sodium_base642bin(bytes.data(), SIZE, text.data(), text.size(), nullptr,
                                         &size, nullptr, sodium_base64_VARIANT_ORIGINAL);
    if (result != 0 || size != SIZE)
        return std::nullopt;
    return bytes;
}

/// Returns the address, which is empty unless it is an https address.
std::string httpsLink(const QJsonValue &json)
{
    const QUrl url(json.toString(), QUrl::StrictMode);
    const bool isHttps = url.isValid() && url.scheme() == u"https" && !url.host().isEmpty();
    return isHttps ? url.toEncoded().toStdString() : std::string();
}

std::optional<FeedRelease> readRelease(const QJsonObject &json)
{
    const std::string text = json[u"version"].toString().toStdString();
    const auto version = readVersion(text);
    const QString channel = json[u"channel"].toString(QStringLiteral("stable"));
    const bool isBeta = channel == u"beta";
    if (!version || (!isBeta && channel != u"stable"))
        return std::nullopt;
    const QJsonValue notes = json[u"notes"];
    FeedRelease release{
        .version = *version,
        .isBeta = isBeta,
        .item = {.version = text, .link = httpsLink(json[u"url"]), .notes = httpsLink(notes)}};
    const bool hasBadNotes = !notes.isUndefined() && release.item.notes.empty();
    if (release.item.link.empty() || hasBadNotes)
        return std::nullopt;
    return release;
}

} // namespace

std::optional<std::string_view> signedPart(std::string_view feed, std::string_view publicKey)
{
    const std::size_t lineEnd = feed.find('\n');
    if (feed.size() > MAX_FEED_BYTES || lineEnd == std::string_view::npos || sodium_init() < 0)
        return std::nullopt;
    const auto signature = fromBase64<crypto_sign_BYTES>(feed.substr(0, lineEnd));
    const auto key = fromBase64<crypto_sign_PUBLICKEYBYTES>(publicKey);
    const std::string_view message = feed.substr(lineEnd + 1);
    if (!signature || !key)
        return std::nullopt;
    const auto *bytes = reinterpret_cast<const unsigned char *>(message.data());
    if (crypto_sign_verify_detached(signature->data(), bytes, message.size(), key->data()) != 0)
        return std::nullopt;
    return message;
}

std::optional<std::vector<FeedRelease>> readReleases(std::string_view json)
{
    const QByteArray bytes(json.data(), static_cast<qsizetype>(json.size()));
    const QJsonValue items = QJsonDocument::fromJson(bytes).object()[u"items"];
    if (!items.isArray())
        return std::nullopt;
    std::vector<FeedRelease> releases;
    for (const QJsonValue item : items.toArray()) {
        if (auto release = readRelease(item.toObject()))
            releases.push_back(std::move(*release));
    }
    return releases;
}

std::optional<VersionNumbers> readVersion(std::string_view text)
{
    const auto mayStandInside = [](char c) { return c == '.' || (c >= '0' && c <= '9'); };
    if (!std::ranges::all_of(text, mayStandInside))
        return std::nullopt;
    const QString version = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
    qsizetype end = 0;
    const QVersionNumber number = QVersionNumber::fromString(version, &end);
    if (number.isNull() || end != version.size())
        return std::nullopt;
    const QList<int> numbers = number.normalized().segments();
    return VersionNumbers(numbers.begin(), numbers.end());
}

const FeedRelease *newestUpdate(std::span<const FeedRelease> releases,
                                const VersionNumbers &running, bool includesBetas)
{
    const FeedRelease *newest = nullptr;
    for (const FeedRelease &release : releases) {
        const bool isOffered = includesBetas || !release.isBeta;
        if (isOffered && release.version > (newest ? newest->version : running))
            newest = &release;
    }
    return newest;
}

} // namespace quillon
