#include "ctl/OwnIndex.h"

#include "ctl/Output.h"
#include "prefs/Preferences.h"

#include <cstdio>
#include <cstdlib>

namespace quillon {

OwnIndex::OwnIndex(const DefaultsStore &user, Source source)
    : settings_(user),
      diskCalls_({.diskOf = remoteDiskOf}),
      identity_(disk_, diskCalls_),
      finder_(settings_, identity_, stderr),
      counts_(settings_),
      score_(counts_),
      matcher_(&score_),
      logger_(settings_, stderr),
      file_(standardIndexPath()),
      keptAt_(source == Source::disk ? std::nullopt : file_.confirmedAt()),
      searchBase_(nullptr, finder_, matcher_,
                  {.folderLister = lister_,
                   .logger = logger_,
                   .mainQueue = queue_,
                   .keptIndex = keptAt_ ? &file_ : nullptr})
{}

bool OwnIndex::choose(const std::vector<std::string> &folders, bool withHidden)
{
    // The store has printed to standard error what is wrong with the settings.
    bool failed = settings_.fault().has_value();
    if (!folders.empty())
        settings_.includeOnly(readableFolders(folders, identity_, failed), withHidden);
    else if (const char *home = std::getenv("HOME");
             !failed && finder_.bookmarks.load().empty() && home != nullptr)
        settings_.includeOnly(readableFolders({home}, identity_, failed));
    return !failed;
}

std::optional<std::chrono::system_clock::time_point> OwnIndex::restore()
{
    return searchBase_.restore() ? keptAt_ : std::nullopt;
}

void OwnIndex::build(const std::function<void(const std::string &line)> &complain,
                     const std::stop_token &stop)
{
    searchBase_.build(
        [&complain](const std::string &line) {
            if (line.starts_with("Enumerator error "))
                complain(line);
        },
        stop);
}

std::vector<FuzzyMatchResult> OwnIndex::find(std::string_view query, std::size_t top,
                                             MatchOrder order, bool inAnyOrder) const
{
    return searchBase_.matchesThere(query, top, order, inAnyOrder);
}

std::vector<FuzzyMatchResult> OwnIndex::mostUsed(std::size_t top) const
{
    return searchBase_.mostUsedThere(top);
}

std::optional<MatchOrder> orderOfSettings(DefaultsStore &settings)
{
    const Preferences preferences(settings);
    if (const auto wrong = preferences.matchOrder.wrongChoice()) {
        complain(wrong->description());
        return std::nullopt;
    }
    return matchOrderNamed(preferences.matchOrder.selected().key);
}

} // namespace quillon
