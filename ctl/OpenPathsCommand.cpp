#include "ctl/OpenPathsCommand.h"

#include "base/PathText.h"
#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "indexing/NameKinds.h"
#include "indexing/SearchBaseFinder.h"
#include "platform/linux/bus/BusRunningInstance.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "platform/linux/settings/JsonDefaultsStore.h"

#include <filesystem>
#include <optional>
#include <set>

namespace quillon {

namespace {

using Outcome = RunningInstance::Outcome;

/// Returns the extensions of the files that the panel lists besides folders.
ExtensionSet listedExtensions()
{
    JsonDefaultsStore settings(standardDefaultsPath());
    const StatxFolderIdentity identity;
    std::set<std::string> extensions;
    for (const auto &location :
         SearchBaseFinder(settings, identity, stderr).includeFilePatternLocations())
        extensions.insert(location.pattern());
    return ExtensionSet(extensions);
}

/// Returns what keeps a path from being opened, before anybody is asked to open it.
std::optional<std::string> obstacle(const std::string &path, const ExtensionSet &extensions)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        return "is not there";
    if (!std::filesystem::is_directory(status) && !extensions.holdsExtensionOf(lastComponent(path)))
        return "is no folder";
    return std::nullopt;
}

std::string description(Outcome outcome)
{
    if (outcome == Outcome::noBus)
        return "there is no session bus that could reach or start Quillon";
    if (outcome == Outcome::notRunning)
        return "Quillon does not run, and the session bus cannot start it";
    return "Quillon runs and does not answer";
}

} // namespace

int OpenPathsCommand::run() const
{
    const ExtensionSet extensions = listedExtensions();
    BusRunningInstance instance;
    bool failed = false;
    for (const std::string &typed : paths) {
        const std::string path = absolutePath(typed);
        std::optional<std::string> fault = obstacle(path, extensions);
        if (!fault) {
            const auto opened = instance.open(standardDefaultsPath(), path);
            if (opened.outcome != Outcome::done) {
                complain(description(opened.outcome));
                return FAILURE;
            }
            if (!opened.fault.empty())
                fault = opened.fault;
        }
        if (fault) {
            complain(typed + ": " + *fault);
            failed = true;
        }
    }
    return failed ? FAILURE : SUCCESS;
}

} // namespace quillon
