#include "platform/linux/session/SearchProviders.h"

#include "base/FileUri.h"
#include "base/TaskQueue.h"

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

/// How well a match fits, as KRunner counts: groups of matches are ranked by the greatest value.
constexpr int EXACT_MATCH = 100;
constexpr int POSSIBLE_MATCH = 30;
/// The relevance of the first match of each kind, and how much less each further row has, so that
/// KRunner keeps the order. There are fewer than sixty rows.
constexpr double EXACT_RELEVANCE = 1.0;
constexpr double POSSIBLE_RELEVANCE = 0.7;
constexpr double RELEVANCE_STEP = 0.005;

QString idOf(const std::string &path)
{
    return QString::fromStdString(fileUri(path));
}

/// Returns the path, which is empty for anything else than an id of an absolute path.
std::string pathOf(const QString &id)
{
    return localPath(id.toStdString()).value_or("");
}

void send(const QDBusMessage &reply)
{
    QDBusConnection::sessionBus().send(reply);
}

} // namespace

/// An icon of the icon theme in the form in which GIO hands icons to other processes.
struct BusThemedIcon
{
    QString kind = QStringLiteral("themed");
    QDBusVariant names{QStringList{QStringLiteral("folder"), QStringLiteral("inode-directory")}};
};

static QDBusArgument &operator<<(QDBusArgument &argument, const BusThemedIcon &icon)
{
    argument.beginStructure();
    argument << icon.kind << icon.names;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, BusThemedIcon &icon)
{
    argument.beginStructure();
    argument >> icon.kind >> icon.names;
    argument.endStructure();
    return argument;
}

/// A row as KRunner takes it.
struct RunnerMatch
{
    QString id;
    QString text;
    QString icon;
    int type = 0;
    double relevance = 0;
    QVariantMap properties;
};

static QDBusArgument &operator<<(QDBusArgument &argument, const RunnerMatch &match)
{
    argument.beginStructure();
    argument << match.id << match.text << match.icon << match.type << match.relevance
             << match.properties;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerMatch &match)
{
    argument.beginStructure();
    argument >> match.id >> match.text >> match.icon >> match.type >> match.relevance >>
        match.properties;
    argument.endStructure();
    return argument;
}

/// Describes an action on a row besides opening it, in KRunner's form.
struct RunnerAction
{
    QString id;
    QString text;
    QString icon;
};

static QDBusArgument &operator<<(QDBusArgument &argument, const RunnerAction &action)
{
    argument.beginStructure();
    argument << action.id << action.text << action.icon;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerAction &action)
{
    argument.beginStructure();
    argument >> action.id >> action.text >> action.icon;
    argument.endStructure();
    return argument;
}

/// What the interfaces below have in common: the answers are made in the background, and the caller
/// of an action is answered before the action begins.
class SearchProviderAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT

protected:
    SearchProviderAdaptor(QObject *parent, TaskQueue &background, RemoteControl::Handlers handlers)
        : QDBusAbstractAdaptor(parent), background_(background), handlers_(std::move(handlers))
    {}

    template <typename ReplyTo>
    void search(const QString &text, const QDBusMessage &message, ReplyTo replyTo)
    {
        message.setDelayedReply(true);
        handlers_.search(text.toStdString(),
                         [message, replyTo](const std::vector<RemoteControl::Row> &rows) {
                             send(message.createReply(QVariant::fromValue(replyTo(rows))));
                         });
    }

    void perform(RemoteControl::Request request)
    {
        QMetaObject::invokeMethod(
            this, [this, request = std::move(request)] { handlers_.perform(request); },
            Qt::QueuedConnection);
    }

    /// Does nothing for an id that is none.
    void perform(const QString &action, const QString &id, std::string activationToken)
    {
        if (std::string path = pathOf(id); !path.empty())
            perform({.action = action.toStdString(),
                     .activationToken = std::move(activationToken),
                     .path = std::move(path)});
    }

    TaskQueue &background_;
    const RemoteControl::Handlers handlers_;
};

class ShellSearchAdaptor : public SearchProviderAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.Shell.SearchProvider2")

public:
    ShellSearchAdaptor(QObject *parent, TaskQueue &background, RemoteControl::Handlers handlers)
        : SearchProviderAdaptor(parent, background, std::move(handlers))
    {
        qDBusRegisterMetaType<BusThemedIcon>();
        qDBusRegisterMetaType<QList<QVariantMap>>();
    }

    // The interface prescribes these names. NOLINTBEGIN(readability-identifier-naming)
public Q_SLOTS:
    QStringList GetInitialResultSet(const QStringList &terms, const QDBusMessage &message)
    {
        search(terms.join(u' '), message, [](const std::vector<RemoteControl::Row> &rows) {
            QStringList ids;
            for (const RemoteControl::Row &row : rows)
                ids.append(idOf(row.path));
            return ids;
        });
        return {};
    }
    /// The best rows for more letters need not be among those for fewer, so all are searched again.
    QStringList GetSubsearchResultSet(const QStringList &, const QStringList &terms,
                                      const QDBusMessage &message)
    {
        return GetInitialResultSet(terms, message);
    }
    QList<QVariantMap> GetResultMetas(const QStringList &ids, const QDBusMessage &message)
    {
        message.setDelayedReply(true);
        background_.post([describe = handlers_.describe, ids, message] {
            QList<QVariantMap> metas;
            for (const QString &id : ids) {
                const std::string path = pathOf(id);
                if (!path.empty())
                    metas.append(meta(id, describe(path)));
            }
            send(message.createReply(QVariant::fromValue(metas)));
        });
        return {};
    }
    void ActivateResult(const QString &id, const QStringList &, uint timestamp)
    {
        perform(QStringLiteral("open"), id, tokenOf(timestamp));
    }
    void LaunchSearch(const QStringList &terms, uint timestamp)
    {
        perform({.action = "show",
                 .activationToken = tokenOf(timestamp),
                 .text = terms.join(u' ').toStdString()});
    }
    // NOLINTEND(readability-identifier-naming)

private:
    static QVariantMap meta(const QString &id, const RemoteControl::Row &row)
    {
        return {{QStringLiteral("id"), id},
                {QStringLiteral("name"), QString::fromStdString(row.name)},
                {QStringLiteral("description"), QString::fromStdString(row.place)},
                {QStringLiteral("icon"), QVariant::fromValue(BusThemedIcon())}};
    }

    /// The shell hands over the display's time of the user's action, which is 0 if there is none.
    static std::string tokenOf(uint timestamp)
    {
        return timestamp == 0 ? std::string() : "shell_TIME" + std::to_string(timestamp);
    }
};

class RunnerAdaptor : public SearchProviderAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.krunner1")

public:
    RunnerAdaptor(QObject *parent, TaskQueue &background, RemoteControl::Handlers handlers)
        : SearchProviderAdaptor(parent, background, std::move(handlers))
    {
        qDBusRegisterMetaType<RunnerMatch>();
        qDBusRegisterMetaType<QList<RunnerMatch>>();
        qDBusRegisterMetaType<RunnerAction>();
        qDBusRegisterMetaType<QList<RunnerAction>>();
    }

    // The interface prescribes these names. NOLINTBEGIN(readability-identifier-naming)
public Q_SLOTS:
    QList<quillon::RunnerAction> Actions() const
    {
        QList<RunnerAction> actions;
        for (const RemoteControl::RowAction &action : handlers_.rowActions)
            actions.append({QString::fromStdString(action.id), QString::fromStdString(action.words),
                            QString::fromStdString(action.icon)});
        return actions;
    }
    QList<quillon::RunnerMatch> Match(const QString &query, const QDBusMessage &message)
    {
        search(query, message, [](const std::vector<RemoteControl::Row> &rows) {
            QList<RunnerMatch> matches;
            for (const RemoteControl::Row &row : rows)
                matches.append(match(row, static_cast<int>(matches.size())));
            return matches;
        });
        return {};
    }
    /// Without an action, the match itself was chosen. An action that no match offers does nothing.
    void Run(const QString &id, const QString &action)
    {
        if (action.isEmpty())
            perform(QStringLiteral("open"), id, {});
        else if (std::ranges::find(handlers_.rowActions, action.toStdString(),
                                   &RemoteControl::RowAction::id) != handlers_.rowActions.end())
            perform(action, id, {});
    }
    /// Ends a session of matches, of which nothing is kept.
    void Teardown() const {}
    // NOLINTEND(readability-identifier-naming)

private:
    static RunnerMatch match(const RemoteControl::Row &row, int rank)
    {
        const QString id = idOf(row.path);
        return {.id = id,
                .text = QString::fromStdString(row.name),
                .icon = QStringLiteral("folder"),
                .type = row.isNamed ? EXACT_MATCH : POSSIBLE_MATCH,
                .relevance =
                    (row.isNamed ? EXACT_RELEVANCE : POSSIBLE_RELEVANCE) - RELEVANCE_STEP * rank,
                .properties = {{QStringLiteral("subtext"), QString::fromStdString(row.place)},
                               {QStringLiteral("urls"), QStringList{id}}}};
    }
};

void addSearchProviders(QObject &object, TaskQueue &background,
                        const RemoteControl::Handlers &handlers)
{
    if (!handlers.search || !handlers.describe)
        return;
    new ShellSearchAdaptor(&object, background, handlers);
    new RunnerAdaptor(&object, background, handlers);
}

} // namespace quillon

#include "SearchProviders.moc"
