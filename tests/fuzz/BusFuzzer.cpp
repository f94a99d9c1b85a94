// Calls the program over a session bus, as any peer may: its own methods and those of the desktops'
// searches with any arguments, and any method with any types. Each call is answered; what reaches
// the program is what was sent, and a path is absolute. Runs below dbus-run-session.

#include "base/InlineTaskQueue.h"
#include "base/PathText.h"
#include "base/Require.h"
#include "platform/linux/bus/BusNames.h"
#include "platform/linux/session/BusRemoteControl.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QEventLoop>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace quillon;

constexpr const char *SHELL = "org.gnome.Shell.SearchProvider2";
constexpr const char *RUNNER = "org.kde.krunner1";

/// Takes values from the bytes; all are empty when none are left.
class Source
{
public:
    Source(const std::uint8_t *data, std::size_t size)
        : rest_(reinterpret_cast<const char *>(data), size)
    {}

    bool isEmpty() const { return rest_.empty(); }
    unsigned number()
    {
        const unsigned byte = rest_.empty() ? 0 : static_cast<unsigned char>(rest_.front());
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
        return byte;
    }
    /// Returns the bytes up to the next line feed.
    QByteArray bytes()
    {
        const std::size_t end = std::min(rest_.find('\n'), rest_.size());
        const QByteArray taken(rest_.data(), static_cast<qsizetype>(end));
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        return taken;
    }
    /// Returns a text that the bus carries, which a null byte would end.
    QString text() { return QString::fromUtf8(bytes().replace('\0', ' ')); }
    QStringList texts()
    {
        QStringList taken;
        for (unsigned left = number() % 5; left > 0; --left)
            taken.append(text());
        return taken;
    }
    QVariantMap map()
    {
        QVariantMap taken;
        for (unsigned left = number() % 3; left > 0; --left) {
            const QString key = number() % 2 == 0 ? QStringLiteral("activation-token") : text();
            taken.insert(key, value());
        }
        return taken;
    }
    QVariant value()
    {
        switch (number() % 9) {
        case 0:
            return bytes();
        case 1:
            return text();
        case 2:
            return texts();
        case 3:
            return number();
        case 4:
            return number() % 2 == 0;
        case 5:
            return static_cast<double>(number()) / 7;
        case 6:
            return QVariant::fromValue(QDBusVariant(text()));
        case 7:
            return static_cast<qlonglong>(number()) << 55U;
        default:
            return QVariantList{number(), text()};
        }
    }

private:
    std::string_view rest_;
};

/// The program's side of the bus. It answers each search with one row and keeps what it was asked.
class Instance
{
public:
    Instance()
    {
        const auto claim = remote_.claim(
            {.perform =
                 [this](const RemoteControl::Request &request) {
                     require(request.path.empty() || request.path.starts_with('/'),
                             "a path is absolute");
                     require(request.path.find('\0') == std::string::npos, "a path has no null");
                     require(request.path.empty() || request.action == "open" ||
                                 request.action == ROW_ACTION,
                             "with a path only what can be done with a row is asked for");
                     openedPath = request.path;
                 },
             .find = [](const RemoteQuery &query) -> RemoteAnswer {
                 require(query.limit <= RemoteQuery::MOST, "an answer has an end");
                 if (query.order.empty())
                     return std::nullopt;
                 return std::vector<RemoteMatch>{{query.text, 0.5, {{0, 1}}}};
             },
             .status = [] { return std::string("{}"); },
             .use = [](const std::string &settings,
                       const std::string &path) { return settings == path; },
             .open = [](const std::string &settings, const std::string &path,
                        const auto &receive) { receive(settings + path); },
             .search =
                 [this](const std::string &text, const auto &receive) {
                     receive({{.path = foundPath, .name = text, .place = "~"}});
                 },
             .describe = [](const std::string &path) -> RemoteControl::Row {
                 return {.path = path, .name = "a name", .place = "~"};
             },
             .rowActions = {{.id = ROW_ACTION, .words = "Copy", .icon = "edit-copy"}}});
        require(claim == RemoteControl::Claim::owner, "there is a session bus of our own");
    }

    std::string foundPath = "/home";
    std::string openedPath;

private:
    static constexpr const char *ROW_ACTION = "copy-path";

    InlineTaskQueue background_;
    BusRemoteControl remote_{background_};
};

/// The peer's side.
class Peer
{
public:
    QDBusMessage call(const QString &interface, const QString &method,
                      const QVariantList &arguments)
    {
        QDBusMessage message = QDBusMessage::createMethodCall(
            QLatin1String(BusNames::SERVICE), QLatin1String(BusNames::OBJECT), interface, method);
        message.setArguments(arguments);
        QDBusPendingCallWatcher watcher(bus_.asyncCall(message));
        while (!watcher.isFinished())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        // What is done after the answer.
        QCoreApplication::processEvents();
        return watcher.reply();
    }

private:
    QDBusConnection bus_ =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("peer"));
};

QVariant call(Peer &peer, const char *interface, const char *method, const QVariantList &arguments)
{
    const QDBusMessage answer =
        peer.call(QLatin1String(interface), QLatin1String(method), arguments);
    require(answer.type() == QDBusMessage::ReplyMessage, "a call of a method is answered");
    return answer.arguments().value(0);
}

/// A path of any bytes, without a slash at its end as in the index, is found, described and opened
/// as the same path.
void checkPath(Peer &peer, Instance &instance, const QByteArray &name)
{
    instance.foundPath = withoutTrailingSlashes("/" + name.toStdString());
    const QStringList words{QStringLiteral("two"), QStringLiteral("words")};
    const QStringList ids = call(peer, SHELL, "GetInitialResultSet", {words}).toStringList();
    require(ids.size() == 1, "a row has an id");
    require(!call(peer, SHELL, "GetResultMetas", {ids}).isNull(), "a row is described");
    for (const auto &[interface, method, arguments] :
         {std::tuple(SHELL, "ActivateResult", QVariantList{ids[0], words, 0U}),
          std::tuple(RUNNER, "Run", QVariantList{ids[0], QString()})}) {
        instance.openedPath.clear();
        call(peer, interface, method, arguments);
        require(instance.openedPath == instance.foundPath, "the row that is chosen is opened");
    }
}

/// Returns the interface, the method and the arguments of one of the methods.
std::tuple<const char *, const char *, QVariantList> someCall(Source &source)
{
    switch (source.number() % 14) {
    case 0:
        return {BusNames::APPLICATION, "Activate", {source.map()}};
    case 1:
        return {BusNames::APPLICATION, "Open", {source.texts(), source.map()}};
    case 2:
        return {BusNames::APPLICATION,
                "ActivateAction",
                {source.text(), QVariantList{source.value()}, source.map()}};
    case 3:
        return {BusNames::SEARCH, BusNames::USE, {source.bytes(), source.bytes()}};
    case 4:
        return {BusNames::SEARCH, BusNames::STATUS, {}};
    case 5:
        return {BusNames::SEARCH, BusNames::OPEN, {source.bytes(), source.bytes()}};
    case 6:
        return {SHELL, "GetInitialResultSet", {source.texts()}};
    case 7:
        return {SHELL, "GetSubsearchResultSet", {source.texts(), source.texts()}};
    case 8:
        return {SHELL, "GetResultMetas", {source.texts()}};
    case 9:
        return {SHELL, "ActivateResult", {source.text(), source.texts(), source.number()}};
    case 10:
        return {SHELL, "LaunchSearch", {source.texts(), source.number() << 24U}};
    case 11:
        return {RUNNER, "Match", {source.text()}};
    case 12:
        return {RUNNER, "Run", {source.text(), source.text()}};
    default:
        return {RUNNER, "Actions", {}};
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "bus_fuzzer";
    static char *argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
    static Instance instance;
    static Peer peer;

    Source source(data, size);
    constexpr int MOST_CALLS = 8;
    for (int i = 0; i < MOST_CALLS && !source.isEmpty(); ++i) {
        switch (source.number() % 4) {
        case 0:
            checkPath(peer, instance, source.bytes().replace('\0', ' '));
            break;
        case 1: {
            const QVariantList arguments{source.bytes(), source.bytes(), source.number() << 24U,
                                         source.text(), source.number() % 2 == 0};
            const QDBusMessage answer = peer.call(QLatin1String(BusNames::SEARCH),
                                                  QLatin1String(BusNames::FIND), arguments);
            const bool isError = answer.type() == QDBusMessage::ErrorMessage;
            require(isError == arguments[3].toString().isEmpty(), "a search without answer fails");
            break;
        }
        case 2: {
            const auto [interface, method, arguments] = someCall(source);
            call(peer, interface, method, arguments);
            break;
        }
        default: {
            // Any types, and any method of the interface: an answer or an error.
            const auto [interface, method, unused] = someCall(source);
            QVariantList arguments;
            for (unsigned left = source.number() % 6; left > 0; --left)
                arguments.append(source.value());
            peer.call(QLatin1String(interface), QLatin1String(method), arguments);
        }
        }
    }
    return 0;
}
