#pragma once

#include "platform/UpdateController.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quillon {

// The first line of the feed is the Ed25519 signature of everything after that line, in base64.
// Then:
//     {"items": [{"version": "1.4.0", "channel": "stable", "url": "https://…", "notes":
//     "https://…"}]}
// "channel" is "stable" or "beta", and "stable" when it is absent. "notes" may be absent.

constexpr std::size_t MAX_FEED_BYTES = std::size_t{256} * 1024;

/// The numbers of a version without the zeros at its end, so that they compare as versions do and
/// 1.4 equals 1.4.0.
using VersionNumbers = std::vector<int>;

/// One release of a feed.
struct FeedRelease
{
    VersionNumbers version;
    bool isBeta = false;
    UpdateItem item;
};

/// Returns exactly the bytes that the feed's signature covers, or nothing when the signature does
/// not match. The key is the 32 bytes of an Ed25519 public key in base64.
std::optional<std::string_view> signedPart(std::string_view feed, std::string_view publicKey);

/// Returns the releases, except those without a proper version, of another channel, or with a link
/// that is not https. Returns nothing when the text is not a list of releases.
std::optional<std::vector<FeedRelease>> readReleases(std::string_view json);

/// Returns the numbers, or nothing unless the text consists of whole numbers with dots between
/// them.
std::optional<VersionNumbers> readVersion(std::string_view text);

/// Returns the newest release above the version, or null when there is none.
const FeedRelease *newestUpdate(std::span<const FeedRelease> releases,
                                const VersionNumbers &running, bool includesBetas);

} // namespace quillon
