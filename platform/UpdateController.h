#pragma once

#include <string>
#include <vector>

namespace quillon {

/// A release that is newer than the running program.
struct UpdateItem
{
    /// Whole numbers and dots.
    std::string version;
    /// Where it can be had: an https address.
    std::string link;
    /// What is new in it: an https address, or empty.
    std::string notes;

    friend bool operator==(const UpdateItem &, const UpdateItem &) = default;
};

/// One thing that the feed is told of who asks.
struct FeedParameter
{
    std::string key;
    std::string value;
    /// For a person who wants to know what is sent.
    std::string displayKey;
    std::string displayValue;
};

/// Why a check found nothing.
enum class NoUpdate
{
    upToDate,
    /// This build has no feed to ask.
    notConfigured,
    /// No answer: no network, no such host, nobody listens there.
    unreachable,
    /// The answer was not there in time.
    tooSlow,
    /// It could not be made sure who answers, or the answer would have come in the clear.
    insecure,
    /// The answer was an error, or far too long to be a feed.
    refused,
    /// The signature is not that of the program's makers.
    notGenuine,
    /// Signed, but no feed.
    unreadable,
};

/// Asked before and told after each check. Main thread.
class UpdateControllerDelegate
{
public:
    UpdateControllerDelegate() = default;
    virtual ~UpdateControllerDelegate() = default;
    UpdateControllerDelegate(const UpdateControllerDelegate &) = delete;
    UpdateControllerDelegate &operator=(const UpdateControllerDelegate &) = delete;

    /// A check asks once, in the call that begins it. With "beta" as "true", beta versions count.
    virtual std::vector<FeedParameter> feedParameters() = 0;
    /// Interactive: somebody waits for the answer.
    virtual void didFindValidUpdate(const UpdateItem &item, bool isInteractive) = 0;
    virtual void didNotFindUpdate(NoUpdate reason, bool isInteractive) = 0;
};

/// Learns of newer releases. It installs none. Main thread only.
///
/// One check runs at a time: what is asked for meanwhile is answered by the one under way, which
/// then is interactive if either was. The answer never comes within the call.
class UpdateController
{
public:
    UpdateController() = default;
    virtual ~UpdateController() = default;
    UpdateController(const UpdateController &) = delete;
    UpdateController &operator=(const UpdateController &) = delete;

    /// Called once, before the first check. The delegate lives as long as checks run.
    virtual void start(UpdateControllerDelegate &delegate) = 0;
    virtual void checkInBackground() = 0;
    virtual void checkInteractively() = 0;
};

} // namespace quillon
