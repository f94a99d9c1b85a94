#include "app/ActionFailures.h"

#include "actions/ActionFailure.h"
#include "app/panel/PanelTexts.h"
#include "base/PathText.h"
#include "base/TaskQueue.h"
#include "core/SearchBase.h"
#include "core/SearchBaseBuilder.h"
#include "matching/RecentAccessScore.h"
#include "platform/Notifications.h"

namespace quillon {

ActionFailures::ActionFailures(const Services &services)
    : services_(services), window_(PanelTexts::failureWindow(), services.windowSystem)
{}

void ActionFailures::report(const ActionFailure &failure)
{
    using enum ActionFailure::Reason;
    if (failure.isUse)
        services_.useQueue.post([&uses = services_.recentAccessScore, result = failure.result] {
            uses.takeBack(*result);
        });
    const std::string away = services_.searchBase.awayFolderOf(failure.result->path());
    const bool isAway = !away.empty() && (failure.reason == itemGone || failure.reason == itemAway);
    if (failure.reason == itemGone && !isAway)
        forgetInIndex(failure.result->path());

    const PanelTexts::Message message =
        isAway ? PanelTexts::away(failure.result->path(), away) : PanelTexts::failure(failure);
    services_.notifications.show(
        {.title = message.title.toStdString(), .text = message.sentence.toStdString()},
        [this, message] {
            window_.present({.title = message.title,
                             .text = message.sentence,
                             .dismissal = PanelTexts::dismissal()});
        });
}

void ActionFailures::forgetInIndex(const std::string &path)
{
    const std::string folder(withoutTrailingSlashes(path));
    // An update would wait for the end of the build, which itself finds what is gone.
    if (services_.builder.isBuilding())
        services_.searchBase.remove(folder);
    else
        services_.background.post(
            [&searchBase = services_.searchBase, folder] { searchBase.update(folder); });
}

} // namespace quillon
