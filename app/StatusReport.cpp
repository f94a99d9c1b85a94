#include "app/StatusReport.h"

#include "core/SearchBase.h"
#include "platform/linux/session/OwnProcess.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace quillon {

namespace {

QString inUtc(std::chrono::system_clock::time_point time)
{
    const auto since1970 = std::chrono::round<std::chrono::milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(since1970.count()).toUTC().toString(Qt::ISODateWithMs);
}

} // namespace

StatusReport::StatusReport(const SearchBase &searchBase, SearchBaseBuilder &builder,
                           std::string version)
    : searchBase_(searchBase), builder_(builder), version_(std::move(version))
{
    builder_.addObserver(*this);
}

StatusReport::~StatusReport()
{
    builder_.removeObserver(*this);
}

void StatusReport::buildBegan()
{
    const MutexLock lock(mutex_);
    state_ = "building";
}

void StatusReport::indexRestored()
{
    const MutexLock lock(mutex_);
    state_ = "checking";
    becomeAnswering();
}

void StatusReport::buildEnded()
{
    const MutexLock lock(mutex_);
    lastBuild_ = builder_.lastBuild();
    if (builder_.isCancelled()) {
        state_ = "cancelled";
    } else if (!builder_.hasLocations()) {
        state_ = "no-folders";
    } else {
        state_ = "ready";
        becomeAnswering();
    }
}

void StatusReport::becomeAnswering()
{
    if (!firstAnswer_)
        firstAnswer_ = OwnProcess::age();
}

std::string StatusReport::json() const
{
    const auto started = std::chrono::system_clock::now() -
                         std::chrono::round<std::chrono::milliseconds>(OwnProcess::age());
    QJsonObject told{{QStringLiteral("version"), QString::fromStdString(version_)},
                     {QStringLiteral("process"), QCoreApplication::applicationPid()},
                     {QStringLiteral("started"), inUtc(started)},
                     {QStringLiteral("indexed"), static_cast<qint64>(searchBase_.count())},
                     {QStringLiteral("memory"), static_cast<qint64>(OwnProcess::residentBytes())}};
    if (const auto watched = searchBase_.watchStatus()) {
        told.insert(QStringLiteral("folders"), static_cast<qint64>(watched->folders));
        told.insert(QStringLiteral("watched"), static_cast<qint64>(watched->watched));
        told.insert(QStringLiteral("watch-limit"), static_cast<qint64>(watched->budget));
    }
    const MutexLock lock(mutex_);
    told.insert(QStringLiteral("state"), QLatin1String(state_));
    if (lastBuild_) {
        told.insert(QStringLiteral("built"), inUtc(lastBuild_->ended));
        told.insert(QStringLiteral("build-seconds"), lastBuild_->took.count());
    }
    if (firstAnswer_)
        told.insert(QStringLiteral("first-answer-seconds"), firstAnswer_->count());
    return QJsonDocument(told).toJson(QJsonDocument::Compact).toStdString();
}

} // namespace quillon
