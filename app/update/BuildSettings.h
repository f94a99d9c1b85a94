#pragma once

#include <string>

namespace quillon {

/// The values with which the build was configured.
struct BuildSettings
{
    std::string version;
    /// The https address of the feed of releases; empty when this build never looks for updates.
    std::string updateFeed;
    /// The public Ed25519 key with which the feed is signed, 32 bytes in base64.
    std::string updateKey;
    /// The address that takes feedback; empty when there is none.
    std::string feedbackAddress;

    static BuildSettings ofThisBuild();
};

} // namespace quillon
