#include "app/SearchEngine.h"

#include "app/DesktopServices.h"
#include "prefs/Preferences.h"

#include <QDir>

#include <utility>

namespace quillon {

SearchEngine::SearchEngine(DesktopServices &services, const Preferences &preferences,
                           std::future<std::optional<KeptTree>> keptTreeToCome)
    : keptTree(std::move(keptTreeToCome)),
      appleScriptRunner(services.fileManager),
      frontFinderSearch({.appleScriptRunner = appleScriptRunner,
                         .fileManager = services.fileManager,
                         .preferences = preferences,
                         .background = services.backgroundQueue,
                         .main = services.mainQueue}),
      uses(services.defaults),
      recentAccessScore(uses),
      keptFolders(services.defaults),
      fuzzyMatch(&recentAccessScore),
      finder(services.defaults, services.folderIdentity),
      logger(services.defaults),
      searchBase(
          &frontFinderSearch, finder, fuzzyMatch,
          {.folderLister = services.folderLister,
           .logger = logger,
           .mainQueue = services.mainQueue,
           .watching = {{.events = services.eventService, .eventQueue = services.eventQueue}},
           .keptIndex = &services.keptIndex,
           .keptTree =
               [this] { return keptTree.valid() ? keptTree.get() : std::optional<KeptTree>(); }}),
      builder({.searchBase = searchBase,
               .searchBaseFinder = finder,
               .background = services.backgroundQueue,
               .main = services.mainQueue}),
      source({.searchBase = searchBase,
              .finder = finder,
              .builder = builder,
              .frontFinderSearch = frontFinderSearch,
              .places = services.places,
              .recentAccessScore = recentAccessScore,
              .useQueue = useQueue,
              .keptFolders = keptFolders,
              .preferences = preferences,
              .disk = services.diskLister},
             QDir::homePath().toStdString())
{}

SearchEngine::~SearchEngine()
{
    useQueue.postAndWait([] {});
}

} // namespace quillon
