#include "platform/linux/updates/FeedUpdateController.h"

#include "base/Require.h"
#include "platform/linux/applications/StartedProgram.h"
#include "platform/linux/updates/FetchStatus.h"
#include "platform/linux/updates/UpdateFeed.h"

#include <QMetaObject>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

NoUpdate reasonFor(int exitCode)
{
    switch (static_cast<FetchStatus>(exitCode)) {
    case FetchStatus::tooSlow:
        return NoUpdate::tooSlow;
    case FetchStatus::insecure:
        return NoUpdate::insecure;
    case FetchStatus::refused:
        return NoUpdate::refused;
    default:
        return NoUpdate::unreachable;
    }
}

QUrl addressWith(const std::string &feed, const std::vector<FeedParameter> &parameters)
{
    QUrl address(QString::fromStdString(feed), QUrl::StrictMode);
    QUrlQuery query(address);
    for (const FeedParameter &parameter : parameters)
        query.addQueryItem(QString::fromStdString(parameter.key),
                           QString::fromStdString(parameter.value));
    address.setQuery(query);
    return address;
}

} // namespace

FeedUpdateController::FeedUpdateController(Source source, Fetching fetching)
    : source_(std::move(source)), fetching_(std::move(fetching))
{
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.setStandardInputFile(QProcess::nullDevice());
    process_.setChildProcessModifier(takeAllSignals);
    QObject::connect(&process_, &QProcess::readyReadStandardOutput, &process_,
                     [this] { takeOutput(); });
    QObject::connect(
        &process_, &QProcess::finished, &process_,
        [this](int exitCode, QProcess::ExitStatus status) { processFinished(exitCode, status); });
    QObject::connect(&process_, &QProcess::errorOccurred, &process_,
                     [this](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart)
                             finish(NoUpdate::unreachable);
                     });
    patience_.setSingleShot(true);
    QObject::connect(&patience_, &QTimer::timeout, &process_, [this] {
        isTooSlow_ = true;
        process_.kill();
    });
}

FeedUpdateController::~FeedUpdateController()
{
    process_.disconnect();
    process_.kill();
    process_.waitForFinished();
}

void FeedUpdateController::start(UpdateControllerDelegate &delegate)
{
    delegate_ = &delegate;
}

void FeedUpdateController::check(bool isInteractive)
{
    require(delegate_ != nullptr, "the update controller is started before it checks");
    if (isChecking_) {
        isInteractive_ = isInteractive_ || isInteractive;
        return;
    }
    isChecking_ = true;
    isInteractive_ = isInteractive;
    const std::vector<FeedParameter> parameters = delegate_->feedParameters();
    includesBetas_ = std::ranges::any_of(parameters, [](const FeedParameter &parameter) {
        return parameter.key == "beta" && parameter.value == "true";
    });
    if (source_.feed.empty())
        finish(NoUpdate::notConfigured);
    else
        startFetching(parameters);
}

void FeedUpdateController::startFetching(const std::vector<FeedParameter> &parameters)
{
    output_.clear();
    isTooSlow_ = false;
    QStringList arguments{QStringLiteral("--patience"),
                          QString::number(fetching_.patience.count())};
    if (!fetching_.authorities.empty())
        arguments << QStringLiteral("--authorities")
                  << QString::fromStdString(fetching_.authorities);
    arguments << addressWith(source_.feed, parameters).toString(QUrl::FullyEncoded);
    patience_.start(fetching_.patience);
    process_.start(QString::fromStdString(fetching_.program), arguments);
}

void FeedUpdateController::takeOutput()
{
    const QByteArray output = process_.readAllStandardOutput();
    output_.append(output.constData(), static_cast<std::size_t>(output.size()));
    if (output_.size() > MAX_FEED_BYTES)
        process_.kill();
}

void FeedUpdateController::processFinished(int exitCode, QProcess::ExitStatus status)
{
    takeOutput();
    if (isTooSlow_)
        finish(NoUpdate::tooSlow);
    else if (output_.size() > MAX_FEED_BYTES)
        finish(NoUpdate::refused);
    else if (status != QProcess::NormalExit || exitCode != static_cast<int>(FetchStatus::fetched))
        finish(reasonFor(exitCode));
    else
        finish(readFeed());
}

FeedUpdateController::Outcome FeedUpdateController::readFeed() const
{
    const auto json = signedPart(output_, source_.publicKey);
    if (!json)
        return NoUpdate::notGenuine;
    const auto releases = readReleases(*json);
    const auto running = readVersion(source_.version);
    if (!releases || !running)
        return NoUpdate::unreadable;
    const FeedRelease *newest = newestUpdate(*releases, *running, includesBetas_);
    if (!newest)
        return NoUpdate::upToDate;
    return newest->item;
}

void FeedUpdateController::finish(Outcome outcome)
{
    patience_.stop();
    const auto tell = [this, outcome = std::move(outcome)] {
        isChecking_ = false;
        if (const auto *item = std::get_if<UpdateItem>(&outcome))
            delegate_->didFindValidUpdate(*item, isInteractive_);
        else
            delegate_->didNotFindUpdate(std::get<NoUpdate>(outcome), isInteractive_);
    };
    QMetaObject::invokeMethod(&process_, tell, Qt::QueuedConnection);
}

} // namespace quillon
