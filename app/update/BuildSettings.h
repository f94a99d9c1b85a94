#pragma once

#include <string>

namespace quillon {

/// What the build was configured with.
struct BuildSettings
{
    std::string version;
    /// The https address of the feed of releases; empty when this build never looks for updates.
    std::string updateFeed;
    /// The feed is signed with this Ed25519 key; it is the public one, 32 bytes in base64.
    std::string updateKey;
    /// The address that takes feedback; empty when there is none.
    std::string feedbackAddress;

    static BuildSettings ofThisBuild();
};

} // namespace quillon
