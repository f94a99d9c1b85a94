#include "ctl/UseCommand.h"

#include "ctl/CommandLine.h"
#include "ctl/HeldUseCounts.h"
#include "ctl/Output.h"
#include "platform/linux/bus/BusRunningInstance.h"
#include "platform/linux/settings/JsonDefaultsStore.h"

#include <filesystem>
#include <optional>
#include <variant>

namespace quillon {

namespace {

using Outcome = RunningInstance::Outcome;

/// Counts the use in the settings file, for which no application is running.
bool countInFile(JsonDefaultsStore &settings, const std::string &path)
{
    return settings.edit(RecentAccessScoreData::KEY, [&path](const auto &stored) {
        const auto *counts = stored ? std::get_if<DefaultsDictionary>(&stored->value) : nullptr;
        HeldUseCounts held(counts != nullptr ? *counts : DefaultsDictionary());
        RecentAccessScore(held).addRecentAccess({path, path, {}, SearchBaseResultType::standard});
        return DefaultsValue{held.counts()};
    });
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
