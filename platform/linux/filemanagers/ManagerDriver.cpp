#include "platform/linux/filemanagers/ManagerDriver.h"

#include "base/FileUri.h"
#include "platform/linux/applications/Applications.h"
#include "platform/linux/filemanagers/ProcessWatches.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

const std::string COMMON_NAME = "org.freedesktop.FileManager1";
/// The time for one question to a file manager. If it hangs, time is left for another way.
constexpr auto ANSWER_LIMIT = 1500ms;
/// The time until a window that was asked shows the folder.
constexpr auto SHOWING_LIMIT = 1000ms;
constexpr auto SEARCH_LIMIT = 700ms;

std::string lastName(const std::string &path)
{
    const std::string name = std::filesystem::path(path).filename().string();
    return name.empty() ? path : name;
}

/// Returns whether the title names the folder. A title is the folder's name or path, followed by
/// the program's name in some file managers. For a name that is not valid text, the title shows its
/// beginning.
bool isTitleFor(const std::string &title, const std::string &folder)
{
    const std::string name = lastName(folder);
    const char *end = nullptr;
    if (!g_utf8_validate(name.data(), static_cast<gssize>(name.size()), &end))
        return title.starts_with(name.substr(0, static_cast<std::size_t>(end - name.data())));
    return std::ranges::any_of(std::array{name, folder}, [&title](const std::string &text) {
        return title == text || title.starts_with(text + " - ") ||
               title.starts_with(text + " \u2014 ");
    });
}

/// Returns whether the process runs the program, by itself or as a script.
bool isProgram(pid_t process, const std::string &name)
{
    std::ifstream commandLine("/proc/" + std::to_string(process) + "/cmdline");
    std::string word;
    for (int i = 0; i < 2 && std::getline(commandLine, word, '\0'); ++i) {
        if (lastName(word) == name)
            return true;
    }
    return false;
}

} // namespace

ManagerDriver::ManagerDriver(Identity identity, Surroundings surroundings)
    : identity_(std::move(identity)), surroundings_(surroundings)
{}

BusObject ManagerDriver::commonObject(const std::string &service)
{
    return {service, "/org/freedesktop/FileManager1", COMMON_NAME};
}

bool ManagerDriver::callCommon(const std::string &service, const std::string &method,
                               const std::string &path, Deadline deadline,
                               BusConnection::Activation activation)
{
    const std::string uri = fileUri(path);
    const std::array<const char *, 2> uris{uri.c_str(), nullptr};
    return surroundings_.session.call(
               commonObject(service), method,
               g_variant_new("(^ass)", uris.data(), surroundings_.token.text().c_str()),
               deadline.atMost(ANSWER_LIMIT), activation) != nullptr;
}

bool ManagerDriver::start(const std::vector<std::string> &options, const std::string &path)
{
    return !identity_.newWindowCommand.empty() &&
           start(identity_.newWindowCommand.front(), options, path);
}

bool ManagerDriver::start(const std::string &program, const std::vector<std::string> &options,
                          const std::string &path)
{
    std::vector<std::string> command{program};
    command.insert(command.end(), options.begin(), options.end());
    command.push_back(identity_.takesPath ? path : fileUri(path));
    return startProgram(command, surroundings_.token.text());
}

// Opening

bool ManagerDriver::openNewWindow(GDesktopAppInfo *application, const std::string &folder,
                                  Deadline deadline)
{
    const auto &command = identity_.newWindowCommand;
    const char *program =
        application ? g_app_info_get_executable(G_APP_INFO(application)) : nullptr;
    // An application in a sandbox is started by another program, whose options differ.
    if (!command.empty() && program && lastName(program) == command.front() &&
        start(program, {command.begin() + 1, command.end()}, folder))
        return true;
    if (application && launch(G_APP_INFO(application), fileUri(folder), surroundings_.token.text()))
        return true;
    return callCommon(COMMON_NAME, "ShowFolders", folder, deadline,
                      BusConnection::Activation::allowed);
}

bool ManagerDriver::showProperties(const std::string &item, Deadline deadline)
{
    // Where the user's file manager does not run, any other one that the bus starts will do.
    return callCommon(commonName(deadline).value_or(COMMON_NAME), "ShowItemProperties", item,
                      deadline, BusConnection::Activation::allowed);
}

// Selecting

std::optional<std::string> ManagerDriver::commonName(Deadline deadline)
{
    const std::string &name = identity_.busName;
    if (!name.empty() && surroundings_.session.hasOwner(name, deadline.atMost(ANSWER_LIMIT)))
        return name;
    return std::nullopt;
}

bool ManagerDriver::selectOnceReady(const std::string &item, Deadline deadline)
{
    // A starting program owns its name before it answers calls, so only an answer shows that it is
    // ready.
    return surroundings_.windows.waitUntil(
        0,
        [&] {
            const auto name = commonName(deadline);
            const Deadline limit = deadline.atMost(ANSWER_LIMIT);
            // Asking again because the answer is late would bring up a second window.
            return name &&
                   (callCommon(*name, "ShowItems", item, limit, BusConnection::Activation::never) ||
                    limit.hasPassed());
        },
        deadline);
}

bool ManagerDriver::selectOnceStarted(const std::vector<std::string> &options,
                                      const std::string &item, Deadline deadline)
{
    std::vector<std::string> command{identity_.newWindowCommand.front()};
    command.insert(command.end(), options.begin(), options.end());
    return startProgram(command, surroundings_.token.text()) && selectOnceReady(item, deadline);
}

bool ManagerDriver::select(GDesktopAppInfo *application, const std::string &item,
                           const std::string &folder, Deadline deadline)
{
    const auto name = commonName(deadline);
    const Deadline limit = deadline.atMost(ANSWER_LIMIT);
    if (name && callCommon(*name, "ShowItems", item, limit, BusConnection::Activation::never))
        return true;
    // A file manager that runs but hangs would not answer after another start either.
    const bool hangs = name && limit.hasPassed();
    if (!hangs && selectByOwnMeans(item, folder, deadline))
        return true;
    if (identity_.busName.empty() && ownsCommonName(application, deadline) &&
        callCommon(COMMON_NAME, "ShowItems", item, deadline, BusConnection::Activation::never))
        return true;
    return openNewWindow(application, folder, deadline);
}

bool ManagerDriver::ownsCommonName(GDesktopAppInfo *application, Deadline deadline)
{
    auto &session = surroundings_.session;
    // Starting the owner of the common name shows no window yet.
    if (!application || !session.start(COMMON_NAME, deadline.atMost(ANSWER_LIMIT)))
        return false;
    const char *program = g_app_info_get_executable(G_APP_INFO(application));
    const auto owner = session.process(COMMON_NAME, deadline.atMost(ANSWER_LIMIT));
    return program && owner && isProgram(*owner, lastName(program));
}

bool ManagerDriver::selectByOwnMeans(const std::string &, const std::string &, Deadline)
{
    return false;
}

bool ManagerDriver::isAnswering(Deadline deadline)
{
    const auto name = commonName(deadline);
    if (!name)
        return false;
    BusObject object = commonObject(*name);
    object.interface = "org.freedesktop.DBus.Introspectable";
    return surroundings_.session.call(object, "Introspect", nullptr,
                                      deadline.atMost(ANSWER_LIMIT)) != nullptr;
}

// The folder of a window

std::string ManagerDriver::nameIn(const DesktopWindow &window) const
{
    const std::string &title = window.title;
    const std::string &end = identity_.titleEnd;
    return title.ends_with(end) ? title.substr(0, title.size() - end.size()) : title;
}

bool ManagerDriver::show(const DesktopWindow &, const std::string &, Deadline)
{
    return false;
}

std::optional<std::uint32_t> ManagerDriver::retarget(const std::vector<DesktopWindow> &windows,
                                                     const std::string &folder, Deadline deadline)
{
    const Deadline limit = deadline.atMost(ANSWER_LIMIT);
    const auto asked = std::ranges::find_if(windows, [&](const DesktopWindow &window) {
        return !limit.hasPassed() && show(window, folder, limit);
    });
    if (asked == windows.end() || !comesToShow(*asked, folder, deadline))
        return std::nullopt;
    return asked->id;
}

bool ManagerDriver::comesToShow(const DesktopWindow &before, const std::string &folder,
                                Deadline deadline)
{
    // A title that fitted before proves nothing. A location bar proves nothing either, since it may
    // hold a location that was written but not opened.
    const bool isTitleTelling = !isTitleFor(before.title, folder);
    const Deadline limit = deadline.atMost(SHOWING_LIMIT);
    const auto isWatched = [&] {
        const auto ask = [process = before.process, folder] {
            return isWatchedFolder(process, folder);
        };
        return surroundings_.disk.run(folder, limit.remaining(), ask).value_or(false);
    };
    const auto hasArrived = [&] {
        DesktopWindow now = before;
        now.title = surroundings_.windows.title(before.id);
        const bool isTitled = isTitleFor(now.title, folder);
        if (isTitled && isTitleTelling)
            return true;
        // Some folders have a title of their own, for example "Home". File managers do not watch
        // the root.
        const bool hasMoved = now.title != before.title || folder == "/" || isWatched();
        return hasMoved && (isTitled || isTold(now, folder, limit));
    };
    return surroundings_.windows.waitUntil(before.id, hasArrived, limit);
}

std::optional<std::string> ManagerDriver::toldFolder(const DesktopWindow &, Deadline)
{
    return std::nullopt;
}

bool ManagerDriver::isTold(const DesktopWindow &window, const std::string &folder,
                           Deadline deadline)
{
    return toldFolder(window, deadline) == folder;
}

std::optional<std::string> ManagerDriver::untitledFolder(const DesktopWindow &, Deadline)
{
    return std::nullopt;
}

std::optional<std::string> ManagerDriver::folderOf(const DesktopWindow &window, Deadline deadline)
{
    if (auto folder = toldFolder(window, deadline.atMost(ANSWER_LIMIT)))
        return folder;
    const auto search = [process = window.process, name = nameIn(window),
                         limit = deadline.atMost(SEARCH_LIMIT)] {
        return watchedFolder(process, name, limit);
    };
    // The search reads the process's open files, which may lie on a disk that does not answer.
    const auto limit = deadline.atMost(2 * SEARCH_LIMIT).remaining();
    if (auto folder = surroundings_.disk.run("/proc", limit, search).value_or(std::nullopt))
        return folder;
    return untitledFolder(window, deadline.atMost(ANSWER_LIMIT));
}

} // namespace quillon
