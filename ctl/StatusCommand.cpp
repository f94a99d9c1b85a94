#include "ctl/StatusCommand.h"

#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "platform/linux/bus/BusRunningInstance.h"
#include "platform/linux/settings/UserCacheFile.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <chrono>
#include <string>

namespace quillon {

namespace {

/// Reads the members of a status and puts them into words.
class StatusText
{
public:
    explicit StatusText(const QJsonObject &status) : status_(status) {}

    QString lines() const
    {
        QString text = QStringLiteral("Quillon %1, process %2, running since %3\n")
                           .arg(word("version"), plain("process"), time("started"));
        text += QStringLiteral("state: %1\n").arg(state());
        text += QStringLiteral("index: %1 folders and files").arg(number("indexed"));
        if (has("built"))
            text += QStringLiteral(", equal to the disk at %1 after %2 s")
                        .arg(time("built"), seconds("build-seconds"));
        text += u'\n';
        if (has("watched"))
            text += QStringLiteral("watched: %1\n").arg(watched());
        text += QStringLiteral("memory: %1 MB\n").arg(english_.toString(megabytes(), 'f', 1));
        if (has("first-answer-seconds"))
            text += QStringLiteral("first answer: %1 s after the start\n")
                        .arg(seconds("first-answer-seconds"));
        return text;
    }

private:
    bool has(const char *name) const { return status_.contains(QLatin1String(name)); }
    QJsonValue value(const char *name) const { return status_.value(QLatin1String(name)); }
    QString word(const char *name) const { return value(name).toString(); }
    QString plain(const char *name) const { return QString::number(value(name).toInteger()); }
    QString number(const char *name) const { return english_.toString(value(name).toInteger()); }
    QString seconds(const char *name) const
    {
        return english_.toString(value(name).toDouble(), 'f', 2);
    }
    QString time(const char *name) const
    {
        const auto utc = QDateTime::fromString(word(name), Qt::ISODateWithMs);
        return QString::fromStdString(
            localTime(std::chrono::system_clock::from_time_t(utc.toSecsSinceEpoch())));
    }
    double megabytes() const
    {
        constexpr double MEGA = 1e6;
        return value("memory").toDouble() / MEGA;
    }

    QString state() const
    {
        const QString state = word("state");
        if (state == u"waiting")
            return QStringLiteral("waiting for the user to set it up");
        if (state == u"building")
            return QStringLiteral("building the index");
        if (state == u"checking")
            return QStringLiteral(
                "answering from the last index while it is compared with the disk");
        if (state == u"cancelled")
            return QStringLiteral("the user has cancelled the build of the index");
        if (state == u"no-folders")
            return QStringLiteral("no folder is chosen to be searched");
        return state;
    }

    QString watched() const
    {
        const QString all =
            QStringLiteral("%1 of %2 folders").arg(number("watched"), number("folders"));
        if (value("watched").toInteger() >= value("folders").toInteger())
            return all;
        if (value("watched").toInteger() < value("watch-limit").toInteger())
            return all + QStringLiteral("; the others are looked at now and then");
        return all + QStringLiteral("; the others are looked at now and then, since Quillon takes "
                                    "%1 of the user's watches at most")
                         .arg(number("watch-limit"));
    }

    const QJsonObject &status_;
    const QLocale english_{QLocale::English};
};

} // namespace

int StatusCommand::run(Output &output) const
{
    BusRunningInstance instance;
    const auto told = instance.status();
    if (!told) {
        const auto keptAt = UserCacheFile(standardIndexPath()).confirmedAt();
        if (instance.isRunning())
            complain("Quillon runs and does not answer");
        else if (keptAt)
            complain("Quillon does not run; it keeps its index of " + localTime(*keptAt));
        else
            complain("Quillon does not run and keeps no index");
        return FAILURE;
    }
    const QJsonDocument status = QJsonDocument::fromJson(QByteArray::fromStdString(*told));
    output.write(json ? *told + '\n' : StatusText(status.object()).lines().toStdString());
    return output.finish() ? SUCCESS : FAILURE;
}

} // namespace quillon
