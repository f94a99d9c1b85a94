#include "app/widgets/IncludeFolders.h"

#include "app/widgets/WriteFault.h"
#include "base/PathText.h"
#include "base/TaskQueue.h"
#include "indexing/NameKinds.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchLocations.h"
#include "indexing/SkipRules.h"
#include "platform/FolderIdentity.h"
#include "platform/FolderLister.h"

#include <QPointer>
#include <QStringList>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

QString drawn(const std::string &path)
{
    return QString::fromStdString(path);
}

} // namespace

void IncludeFolders::add(std::vector<std::string> paths, QObject *asking,
                         std::function<void(const Outcome &)> added) const
{
    services_.background.post([include = *this, paths = std::move(paths), added = std::move(added),
                               asking = QPointer(asking)] {
        include.services_.main.post([outcome = include.added(paths), added, asking] {
            if (asking)
                added(outcome);
        });
    });
}

IncludeFolders::Outcome IncludeFolders::added(const std::vector<std::string> &paths) const
{
    const SearchLocations locations = SearchLocations::of(services_.searchBaseFinder);
    const std::vector<std::string> &listed = locations.folders;
    const std::shared_ptr<const SkipRules> rules = locations.rules();

    Outcome outcome;
    QStringList faults;
    for (const std::string &path : paths) {
        QString found = fault(path, listed, *rules);
        if (found.isEmpty() && !services_.searchBaseFinder.bookmarks.add(path))
            found = writeFault();
        if (found.isEmpty())
            outcome.added.push_back(path);
        else
            faults.push_back(found);
    }
    outcome.faults = faults.join(u'\n');
    return outcome;
}

/// Returns an empty text when nothing is wrong.
QString IncludeFolders::fault(const std::string &path, const std::vector<std::string> &listed,
                              const SkipRules &rules) const
{
    if (std::ranges::find(listed, path) != listed.end())
        return tr("“%1” is searched already.").arg(drawn(path));
    const FolderPresence presence = services_.folderIdentity.presence(path);
    if (presence == FolderPresence::away)
        return tr("“%1” is no folder.").arg(drawn(path));
    if (presence != FolderPresence::there)
        return tr("“%1” cannot be read, so it cannot be searched.").arg(drawn(path));
    if (isPackageName(lastComponent(path)))
        return tr("“%1” counts as a single item: nothing in it would be found.").arg(drawn(path));
    const auto around = std::ranges::find_if(
        listed, [&](const std::string &folder) { return isSearchedAsPartOf(folder, path, rules); });
    if (around != listed.end())
        return tr("“%1” is searched already, as a part of “%2”.").arg(drawn(path), drawn(*around));
    return {};
}

/// Returns true when a crawl of the folder reaches the path too.
bool IncludeFolders::isSearchedAsPartOf(const std::string &folder, const std::string &path,
                                        const SkipRules &rules) const
{
    const std::string prefix = folder == "/" ? folder : folder + '/';
    if (!path.starts_with(prefix))
        return false;
    SkipRules::State state = rules.stateOf(folder == "/" ? "" : folder);
    for (std::size_t begin = prefix.size(); begin < path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const auto name = std::string_view(path).substr(begin, end - begin);
        const bool isHidden = SkipRules::hides(state, name, true);
        state = rules.below(state, name);
        const bool isEntered = end == path.size() || !isPackageName(name);
        if (isHidden || !isEntered ||
            rules.skips(state, name, [&] { return std::string_view(path).substr(0, end); }))
            return false;
        begin = end + 1;
    }
    // A crawl does not follow links.
    return services_.folderLister.kind(path) == FolderLister::Kind::folder;
}

} // namespace quillon
