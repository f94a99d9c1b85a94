#pragma once

#include <string>
#include <vector>

namespace quillon {

/// A release that is newer than the running program.
struct UpdateItem
{
    /// The version consists of whole numbers and dots.
    std::string version;
    /// The release can be downloaded from this https address.
    std::string link;
    /// The page at this https address says what is new. It may be empty.
    std::string notes;

    friend bool operator==(const UpdateItem &, const UpdateItem &) = default;
};

/// One thing that the feed is told about the program that asks.
struct FeedParameter
{
    std::string key;
    std::string value;
    /// This says the same in words, for a user who wants to know what is sent.
    std::string displayKey;
    std::string displayValue;
};

/// The reason why a check found nothing.
enum class NoUpdate
{
    upToDate,
    /// This build has no feed to ask.
    notConfigured,
    /// No answer came: there is no network, no such host, or nobody listens there.
    unreachable,
    /// The answer did not come in time.
    tooSlow,
    /// The server could not prove who it is, or the answer would have come unencrypted.
    insecure,
    /// The answer was an error, or far too long for a feed.
    refused,
    /// The signature is not that of the program's makers.
    notGenuine,
    /// The answer is signed, but it is not a feed.
    unreadable,
};

/// Is asked before each check and told its result. Main thread only.
class UpdateControllerDelegate
{
public:
    UpdateControllerDelegate() = default;
    virtual ~UpdateControllerDelegate() = default;
    UpdateControllerDelegate(const UpdateControllerDelegate &) = delete;
    UpdateControllerDelegate &operator=(const UpdateControllerDelegate &) = delete;

    /// A check asks once, in the call that begins it. Beta versions count when "beta" is "true".
    virtual std::vector<FeedParameter> feedParameters() = 0;
    /// Somebody waits for the answer when the check is interactive.
    virtual void didFindValidUpdate(const UpdateItem &item, bool isInteractive) = 0;
    virtual void didNotFindUpdate(NoUpdate reason, bool isInteractive) = 0;
};

/// Learns of newer releases. It installs none. Main thread only.
///
/// One check runs at a time. A check that is asked for meanwhile shares the answer of the running
/// one, which is interactive then if either was. The answer never arrives during the call.
class UpdateController
{
public:
    UpdateController() = default;
    virtual ~UpdateController() = default;
    UpdateController(const UpdateController &) = delete;
    UpdateController &operator=(const UpdateController &) = delete;

    /// It is called once, before the first check. The delegate outlives all checks.
    virtual void start(UpdateControllerDelegate &delegate) = 0;
    virtual void checkInBackground() = 0;
    virtual void checkInteractively() = 0;
};

} // namespace quillon
