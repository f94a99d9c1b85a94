#include "launcher/OpenCommand.h"

#include "launcher/ApplicationNames.h"
#include "platform/Workspace.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace quillon {

namespace {

constexpr int USAGE_ERROR = 2;
/// This name stands for whichever terminal is installed.
constexpr std::string_view TERMINAL = "Terminal";

/// Returns the installed applications. Where several have the same name, the item's default
/// application comes first.
std::vector<Application> applicationsFor(const std::string &path,
                                         const ApplicationLauncher &launcher,
                                         const Workspace &workspace)
{
    std::vector<Application> applications = launcher.applications();
    const std::string first = workspace.applicationToOpen(path);
    std::stable_partition(applications.begin(), applications.end(),
                          [&first](const Application &each) { return each.id == first; });
    return applications;
}

} // namespace

OpenCommand::OpenCommand(ApplicationLauncher &launcher, Workspace &workspace,
                         std::FILE *diagnostics)
    : launcher_(launcher), workspace_(workspace), diagnostics_(diagnostics)
{}

int OpenCommand::run(const std::vector<std::string> &arguments)
{
    const bool isNamed = arguments.size() == 3 && arguments[0] == "-a";
    if (!isNamed && (arguments.size() != 1 || arguments[0].starts_with('-')))
        return complain(USAGE_ERROR, "usage: open PATH, or open -a APPLICATION PATH");
    std::error_code error;
    const std::string path = std::filesystem::absolute(arguments.back(), error);
    if (error || !std::filesystem::exists(path, error))
        return complain(EXIT_FAILURE, "there is no " + arguments.back());
    if (isNamed)
        return openWith(arguments[1], path) ? EXIT_SUCCESS : EXIT_FAILURE;
    if (!workspace_.open(path))
        return complain(EXIT_FAILURE, "no application opens " + path);
    return EXIT_SUCCESS;
}

bool OpenCommand::openWith(const std::string &name, const std::string &path)
{
    const auto applications = applicationsFor(path, launcher_, workspace_);
    if (const Application *found = findApplication(
            name, applications, name == TERMINAL ? NameKinds::own : NameKinds::ownAndGeneric)) {
        if (launcher_.launch(found->id, path))
            return true;
        complain(EXIT_FAILURE, found->id + " does not start");
        return false;
    }
    if (name == TERMINAL && openTerminal(path))
        return true;
    std::string line = "there is no application \"" + name + "\"";
    const std::vector<std::string> nearest = nearestNames(name, applications);
    for (std::size_t i = 0; i < nearest.size(); ++i)
        line += (i == 0 ? "; near it: \"" : ", \"") + nearest[i] + "\"";
    complain(EXIT_FAILURE, line);
    return false;
}

bool OpenCommand::openTerminal(const std::string &path)
{
    const std::filesystem::path item(path);
    const std::string folder = workspace_.isFolder(path) ? item : item.parent_path();
    if (launcher_.run("xdg-terminal-exec", folder))
        return true;
    const char *own = std::getenv("TERMINAL");
    if (own && *own && launcher_.run(own, folder))
        return true;
    if (launcher_.run("x-terminal-emulator", folder))
        return true;
    const std::vector<Application> applications = launcher_.applications();
    return std::ranges::any_of(applications, [&](const Application &each) {
        return each.isTerminalEmulator && each.isShown && launcher_.launch(each.id, path);
    });
}

int OpenCommand::complain(int status, const std::string &line) const
{
    std::fprintf(diagnostics_, "open: %s\n", line.c_str());
    return status;
}

} // namespace quillon
