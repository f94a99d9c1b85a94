#include "app/panel/PanelTexts.h"

#include "actions/ActionFailure.h"
#include "app/widgets/WriteFault.h"
#include "base/PathText.h"
#include "results/RowText.h"

#include <QStringList>

#include <string_view>
#include <utility>

namespace quillon {

namespace {

/// Returns the last component of a path as a person reads it.
QString nameOf(std::string_view path)
{
    path = withoutTrailingSlashes(path);
    return displayText(path == "/" ? path : lastComponent(path));
}

} // namespace

PanelTexts::Message PanelTexts::message(const PanelSource::State &state, const QString &query)
{
    if (!state.hasLocations)
        return {.title = tr("No folders to search yet"),
                .sentence = state.isWriteRefused ? writeFault()
                                                 : tr("Press Return to search your home folder, "
                                                      "or choose folders in the preferences")};
    const auto count = static_cast<int>(state.count);
    if (state.isBuilding && !state.isComparing)
        return {.title = tr("Indexing your folders…"),
                .sentence = tr("%Ln folder(s) so far: you can already search", nullptr, count)};
    if (state.count == 0 && !state.away.empty())
        return {.title = tr("The folders to search are away"),
                .sentence = tr("Connect the disk or the network share of “%1”, "
                               "or choose other folders in the preferences")
                                .arg(displayText(state.away.front()))};
    if (query.isEmpty())
        return {.title = tr("Type a part of a folder’s name"),
                .sentence = tr("The folders you open most will be listed here")};
    if (query.toUcs4().size() == 1)
        return {.title = tr("Type one more letter"),
                .sentence = tr("A search begins with the second one")};
    return {.title = tr("No folder matches “%1”").arg(query),
            .sentence = query.contains(u' ')
                            ? tr("Try it without the blanks")
                            : tr("Try fewer letters, or add a search folder in the preferences")};
}

QString PanelTexts::status(const PanelSource::State &state)
{
    if (!state.hasLocations)
        return {};
    if (state.isWriteRefused)
        return writeFault();
    const QString folders = tr("%Ln folder(s)", nullptr, static_cast<int>(state.count));
    if (state.isComparing)
        return tr("Checking for changes: %1").arg(folders);
    if (state.isBuilding)
        return tr("Indexing: %1").arg(folders);
    if (state.isCancelled)
        return tr("Indexing stopped: %1").arg(folders);
    if (state.away.empty())
        return folders;
    const auto others = static_cast<int>(state.away.size());
    return folders + QStringLiteral(" · ") +
           (others == 1 ? tr("“%1” is away").arg(nameOf(state.away.front()))
                        : tr("%Ln search folder(s) away", nullptr, others));
}

PanelTexts::Message PanelTexts::failure(const ActionFailure &failure)
{
    const QString path = displayText(failure.result->path());
    const QString name = nameOf(failure.result->path());
    const QString target = displayText(failure.target);
    switch (failure.reason) {
    case ActionFailure::Reason::itemGone:
        if (failure.result->type() == SearchBaseResultType::goToPath)
            return {.title = tr("There is no “%1”").arg(path),
                    .sentence = tr("Check the path for a typing mistake.")};
        return {.title = tr("“%1” is gone").arg(name),
                .sentence = tr("%1 was moved, renamed or deleted. Search for its new name, or look "
                               "in the trash.")
                                .arg(path)};
    case ActionFailure::Reason::itemAway:
        return away(failure.result->path(), failure.result->awayFolder());
    case ActionFailure::Reason::itemUnreachable:
        return {.title = tr("“%1” does not answer").arg(name),
                .sentence = tr("Check that the disk or the network share of %1 is connected, then "
                               "try again.")
                                .arg(path)};
    case ActionFailure::Reason::noFileManager:
        return {.title = tr("“%1” could not be opened").arg(name),
                .sentence = tr("No file manager is installed. Install one, then try again.")};
    case ActionFailure::Reason::fileManagerFailed:
        return {.title = tr("“%1” could not be opened").arg(name),
                .sentence = tr("The file manager did not answer. Try again, or choose another one "
                               "in the preferences under “General”.")};
    case ActionFailure::Reason::noDefaultApplication:
        return {.title = tr("“%1” could not be opened").arg(name),
                .sentence = tr("No application opens files of this kind. Choose one in your file "
                               "manager.")};
    case ActionFailure::Reason::applicationFailed:
        return {.title = tr("“%1” could not be opened with “%2”").arg(name, target),
                .sentence = tr("Install the application, or choose another one in the preferences "
                               "under “Actions”.")};
    case ActionFailure::Reason::executableFailed:
        break;
    }
    return {.title = tr("“%1” could not be started").arg(nameOf(failure.target)),
            .sentence = tr("Check that %1 is there and may be run, or choose another program in "
                           "the preferences under “Actions”.")
                            .arg(target)};
}

PanelTexts::Message PanelTexts::away(const std::string &path, const std::string &folder)
{
    return {.title = tr("“%1” is not there now").arg(nameOf(path)),
            .sentence = tr("Connect “%1”, which holds %2, then try again.")
                            .arg(diskName(folder), displayText(path))};
}

QString PanelTexts::diskName(std::string_view folder)
{
    // The number of components before the name of the disk.
    constexpr std::pair<std::string_view, int> PLACES[] = {
        {"/run/media", 3}, {"/media", 2}, {"/mnt", 1}};
    const QStringList names = displayText(folder).split(u'/', Qt::SkipEmptyParts);
    for (const auto &[place, before] : PLACES)
        if (isBelow(folder, place) && names.size() > before)
            return names.at(before);
    return nameOf(folder);
}

QString PanelTexts::failureWindow()
{
    return tr("Quillon – Not Opened");
}

QString PanelTexts::dismissal()
{
    return tr("&Close");
}

} // namespace quillon
