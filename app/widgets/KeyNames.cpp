#include "app/widgets/KeyNames.h"

#include <QCoreApplication>
#include <QStringList>

namespace quillon {

QString keyNames(ActionShortcutFlags flags, QChar separator)
{
    QStringList keys;
    if (flags.command)
        keys << QCoreApplication::translate("KeyNames", "Ctrl");
    if (flags.option)
        keys << QCoreApplication::translate("KeyNames", "Alt");
    if (flags.shift)
        keys << QCoreApplication::translate("KeyNames", "Shift");
    keys << QCoreApplication::translate("KeyNames", "Return");
    return keys.join(separator);
}

} // namespace quillon
