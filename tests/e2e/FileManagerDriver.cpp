// Asks the desktop's file managers one thing and prints the answer as JSON, for the tests with real
// file managers, which check the effect of a call on the windows.
//
//   file_manager_driver [--application ID] new FOLDER | existing FOLDER | select ITEM FOLDER |
//                       front | application | close WINDOW

#include "base/FileUri.h"
#include "platform/linux/filemanagers/DesktopFileManager.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

namespace quillon {
namespace {

using Arguments = std::vector<std::string>;

double milliseconds(std::chrono::steady_clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

/// Returns the URI of a path, since a path may hold any bytes and JSON may not.
QString uri(const std::string &path)
{
    return QString::fromStdString(fileUri(path));
}

QJsonObject front(DesktopFileManager &manager)
{
    const auto start = std::chrono::steady_clock::now();
    manager.noteFrontWindow();
    const auto noted = std::chrono::steady_clock::now();
    const auto folder = manager.frontWindowFolder();
    const auto found = std::chrono::steady_clock::now();
    QJsonArray items;
    const auto listed = manager.frontWindowItems();
    const auto done = std::chrono::steady_clock::now();
    for (const std::string &item : listed)
        items.append(uri(item) + QLatin1String(item.ends_with('/') ? "/" : ""));
    return {{QStringLiteral("isFrontmost"), manager.isFrontmost()},
            {QStringLiteral("folder"), folder ? uri(*folder) : QString()},
            {QStringLiteral("items"), items},
            {QStringLiteral("notedAfter"), milliseconds(noted - start)},
            {QStringLiteral("itemsAfter"), milliseconds(done - found)},
            {QStringLiteral("milliseconds"), milliseconds(found - noted)}};
}

QJsonObject answer(DesktopFileManager &manager, const Arguments &arguments)
{
    const auto &operation = arguments.front();
    if (operation == "front")
        return front(manager);
    if (operation == "application")
        return {{QStringLiteral("application"), QString::fromStdString(manager.application())}};
    if (operation == "close") {
        X11Windows().close(static_cast<std::uint32_t>(std::stoul(arguments.at(1))));
        return {};
    }
    const auto start = std::chrono::steady_clock::now();
    const bool isDone = operation == "new"        ? manager.openNewWindow(arguments.at(1))
                        : operation == "existing" ? manager.openInFrontWindow(arguments.at(1))
                        : operation == "select"   ? manager.select(arguments.at(1), arguments.at(2))
                                                  : manager.probe();
    return {
        {QStringLiteral("isDone"), isDone},
        {QStringLiteral("milliseconds"), milliseconds(std::chrono::steady_clock::now() - start)}};
}

} // namespace
} // namespace quillon

int main(int argc, char **argv)
{
    quillon::Arguments arguments(argv + 1, argv + argc);
    std::optional<std::string> choice;
    if (arguments.size() > 2 && arguments[0] == "--application") {
        choice = arguments[1];
        arguments.erase(arguments.begin(), arguments.begin() + 2);
    }
    if (arguments.empty())
        return 2;
    const quillon::LaunchToken none;
    quillon::DesktopFileManager manager([choice] { return choice; }, none);
    const QJsonObject answer = quillon::answer(manager, arguments);
    std::puts(QJsonDocument(answer).toJson(QJsonDocument::Compact).constData());
    return 0;
}
