#include "app/DesktopServices.h"

#include "app/update/BuildSettings.h"
#include "platform/linux/bus/Deadline.h"
#include "platform/linux/hotkey/SessionHotKey.h"
#include "prefs/PreferenceKeys.h"

#include <QThread>

#include <algorithm>

namespace quillon {

namespace {

/// There must be room for a build beside the searches.
constexpr int FEWEST_BACKGROUND_THREADS = 3;
/// The time that an action or an icon waits for the file system.
constexpr std::chrono::seconds WORKSPACE_PATIENCE{3};

} // namespace

DesktopServices::DesktopServices(const BuildSettings &build, const std::string &programsFolder)
    : backgroundQueue(std::max(FEWEST_BACKGROUND_THREADS, QThread::idealThreadCount())),
      iconQueue(1),
      countingQueue(1),
      actionQueue(1),
      eventQueue("org.quillon.Quillon.sbw-fs-events"),
      defaults(standardDefaultsPath()),
      defaultsChanges(standardDefaultsPath()),
      diskCalls({.diskOf = remoteDiskOf}),
      diskWorkspace(launchToken),
      workspace(diskWorkspace, diskCalls, WORKSPACE_PATIENCE),
      applications(launchToken),
      processRunner(launchToken),
      recentItems(standardRecentItemsPath()),
      fileManager([this] { return defaults.string(PreferenceKeys::FILE_MANAGER); }, launchToken),
      folderLister(diskLister, diskCalls),
      folderIdentity(diskIdentity, diskCalls),
      windowPlaces(standardWindowPlacesPath()),
      keptIndex(standardIndexPath()),
      updateController(
          {.feed = build.updateFeed, .publicKey = build.updateKey, .version = build.version},
          {.program = programsFolder + "/fetch-feed"}),
      hotKey(makeSessionHotKey())
{}

DesktopServices::~DesktopServices() = default;

bool DesktopServices::finish(std::chrono::milliseconds patience)
{
    const Deadline deadline(patience);
    mainQueue.close();
    bool haveEnded = eventQueue.finish(deadline.remaining());
    for (PoolTaskQueue *queue : {&backgroundQueue, &actionQueue, &iconQueue, &countingQueue})
        haveEnded = queue->finish(deadline.remaining()) && haveEnded;
    return haveEnded;
}

} // namespace quillon
