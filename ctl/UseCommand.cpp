#include "ctl/UseCommand.h"

#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "matching/RecentAccessScore.h"
#include "platform/linux/bus/BusRunningInstance.h"
#include "platform/linux/settings/JsonDefaultsStore.h"

#include <filesystem>
#include <optional>

namespace quillon {

namespace {

using Outcome = RunningInstance::Outcome;

/// Counts the use in the settings file, for which no application is running.
bool countInFile(JsonDefaultsStore &settings, const std::string &path)
{
    DefaultsRecentAccessScoreDataStore store(settings);
    return RecentAccessScore(store).addRecentAccess(
        {path, path, {}, SearchBaseResultType::standard});
}

} // namespace

int UseCommand::run() const
{
    BusRunningInstance instance;
    std::optional<JsonDefaultsStore> settings;
    bool failed = false;
    for (const std::string &typed : paths) {
        const std::string path = absolutePath(typed);
        std::error_code error;
        if (!std::filesystem::exists(std::filesystem::symlink_status(path, error))) {
            complain(typed + ": is not there");
            failed = true;
            continue;
        }
        const Outcome outcome = instance.use(standardDefaultsPath(), path);
        if (outcome == Outcome::done)
            continue;
        if (outcome == Outcome::notAnswering) {
            complain("Quillon runs and does not answer");
            return FAILURE;
        }
        if (!settings)
            settings.emplace(standardDefaultsPath());
        if (!countInFile(*settings, path)) {
            complain(typed + ": the use could not be stored");
            failed = true;
        }
    }
    return failed ? FAILURE : SUCCESS;
}

} // namespace quillon
