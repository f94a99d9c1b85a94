#include "app/preferences/ListedApplication.h"

#include <algorithm>
#include <map>

namespace quillon {

std::vector<ListedApplication> listedApplications(const std::vector<Application> &installed)
{
    std::map<std::string, int> named;
    for (const Application &each : installed)
        named[each.name] += each.isShown ? 1 : 0;
    std::vector<ListedApplication> listed;
    for (const Application &each : installed) {
        if (!each.isShown || each.name.empty())
            continue;
        const QString name = QString::fromStdString(each.name);
        const QString id = QString::fromStdString(each.id);
        const QString program =
            each.executable.empty() ? id : QString::fromStdString(each.executable);
        const bool isAlone = named[each.name] == 1;
        listed.push_back({.application = each,
                          .title = isAlone ? name : QStringLiteral("%1 (%2)").arg(name, program),
                          .target = isAlone ? name : id});
    }
    std::ranges::sort(listed, [](const ListedApplication &a, const ListedApplication &b) {
        return QString::localeAwareCompare(a.title, b.title) < 0;
    });
    return listed;
}

} // namespace quillon
