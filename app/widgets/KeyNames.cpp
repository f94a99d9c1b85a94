#include "app/widgets/KeyNames.h"

#include "shortcut/QLNShortcut.h"

namespace quillon {

QString keyNames(ActionShortcutFlags flags, QChar separator)
{
    const QLNShortcut shortcut{
        .keys = KeyCombination{
            .control = flags.command, .alt = flags.option, .shift = flags.shift, .key = "Return"}};
    return shortcut.keyNames().join(separator);
}

QStringList keyNames(std::string_view keys)
{
    const auto shortcut = QLNShortcut::fromText(keys);
    return shortcut ? shortcut->keyNames() : QStringList();
}

} // namespace quillon
