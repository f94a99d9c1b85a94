#pragma once

#include "platform/UpdateController.h"

#include <QProcess>
#include <QTimer>

#include <chrono>
#include <string>
#include <variant>

namespace quillon {

/// Asks a signed feed of releases (see UpdateFeed.h). The program fetch-feed fetches it, so that
/// the libraries of the network are loaded only while a check runs and a check can be ended at any
/// time. Nothing that was fetched is read before its signature has been checked.
class FeedUpdateController : public UpdateController
{
public:
    struct Source
    {
        /// The https address of the feed. It is empty in a build that checks for no updates.
        std::string feed;
        /// The 32 bytes of the makers' Ed25519 public key in base64.
        std::string publicKey;
        /// The version of this program.
        std::string version;
    };
    struct Fetching
    {
        /// The path of the program fetch-feed.
        std::string program;
        /// The time within which the whole answer has to arrive.
        std::chrono::milliseconds patience = std::chrono::seconds(10);
        /// A file of certificates to trust instead of the system's. If it is empty, the system's
        /// are trusted.
        std::string authorities = {};
    };

    FeedUpdateController(Source source, Fetching fetching);
    /// Ends a running check without calling the delegate.
    ~FeedUpdateController() override;

    void start(UpdateControllerDelegate &delegate) override;
    void checkInBackground() override { check(false); }
    void checkInteractively() override { check(true); }

private:
    using Outcome = std::variant<UpdateItem, NoUpdate>;

    void check(bool isInteractive);
    void startFetching(const std::vector<FeedParameter> &parameters);
    void takeOutput();
    void processFinished(int exitCode, QProcess::ExitStatus status);
    Outcome readFeed() const;
    /// Calls the delegate from the event loop, not within this call.
    void finish(Outcome outcome);

    Source source_;
    Fetching fetching_;
    UpdateControllerDelegate *delegate_ = nullptr;
    QProcess process_;
    QTimer patience_;
    std::string output_;
    bool isChecking_ = false;
    bool isInteractive_ = false;
    bool includesBetas_ = false;
    bool isTooSlow_ = false;
};

} // namespace quillon
