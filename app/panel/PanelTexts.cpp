#include "app/panel/PanelTexts.h"

namespace quillon {

PanelTexts::Message PanelTexts::message(const PanelSource::State &state, const QString &query)
{
    if (!state.hasLocations)
        return {.title = tr("No folders to search yet"),
                .sentence = tr("Press Return to search your home folder, "
                               "or choose folders in the preferences")};
    const auto count = static_cast<int>(state.count);
    if (state.isBuilding)
        return {.title = tr("Indexing your folders…"),
                .sentence = tr("%Ln folder(s) so far: you can already search", nullptr, count)};
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
    const QString folders = tr("%Ln folder(s)", nullptr, static_cast<int>(state.count));
    return state.isBuilding ? tr("Indexing: %1").arg(folders) : folders;
}

} // namespace quillon
