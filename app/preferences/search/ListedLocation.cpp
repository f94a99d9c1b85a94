#include "app/preferences/search/ListedLocation.h"

#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchLocations.h"

#include <QCoreApplication>

#include <algorithm>

namespace quillon {

namespace {

/// The translators see these texts here.
[[maybe_unused]] constexpr const char *SUFFIXES[] = {
    QT_TRANSLATE_NOOP("SearchBaseLocation", " – Include Folder, Recursive"),
    QT_TRANSLATE_NOOP("SearchBaseLocation", " – Exclude Pattern"),
    QT_TRANSLATE_NOOP("SearchBaseLocation", " – Include Files with Extension"),
};

QString translated(std::string_view text)
{
    return QCoreApplication::translate("SearchBaseLocation", std::string(text).c_str());
}

/// Returns a text that begins with a blank, as the suffixes do, or an empty text for a folder that
/// is there.
QString drawn(ListedLocation::Presence presence)
{
    switch (presence) {
    case ListedLocation::Presence::away:
        return translated(QT_TRANSLATE_NOOP("SearchBaseLocation", " – not there now"));
    case ListedLocation::Presence::unreadable:
        return translated(QT_TRANSLATE_NOOP("SearchBaseLocation", " – may not be read"));
    case ListedLocation::Presence::there:
        break;
    }
    return {};
}

} // namespace

QList<FormTextRun> ListedLocation::label() const
{
    const bool isQuiet = presence != Presence::there;
    return {
        {.text = QString::fromStdString(location->mainText()), .isBold = true, .isQuiet = isQuiet},
        {.text = translated(location->kindSuffix()) + drawn(presence), .isQuiet = isQuiet}};
}

bool ListedLocation::names(const SearchBaseLocation &other) const
{
    return location->type() == other.type() && location->mainText() == other.mainText();
}

std::vector<ListedLocation> listed(const SearchLocations &locations, const SearchBaseFinder &finder)
{
    using enum ListedLocation::Presence;
    std::vector<ListedLocation> all;
    for (const std::string &folder : locations.folders)
        all.push_back({std::make_shared<IncludePathSearchBaseLocation>(folder), there,
                       std::ranges::binary_search(locations.withHidden, folder)});
    for (const SearchLocations::Missing &folder : locations.missing)
        all.push_back({std::make_shared<IncludePathSearchBaseLocation>(folder.name),
                       folder.presence == FolderPresence::unreadable ? unreadable : away,
                       std::ranges::binary_search(locations.namesWithHidden, folder.name)});
    std::ranges::sort(all, {},
                      [](const ListedLocation &each) { return each.location->mainText(); });
    for (const std::string &pattern : locations.filePatterns)
        all.push_back({std::make_shared<IncludeFilePatternSearchBaseLocation>(pattern)});
    for (const auto &location : finder.excludeLocations())
        all.push_back({std::make_shared<ExcludePatternSearchBaseLocation>(location)});
    return all;
}

} // namespace quillon
