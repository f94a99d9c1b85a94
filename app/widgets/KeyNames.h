#pragma once

#include "actions/ActionShortcutFlags.h"

#include <QString>
#include <QStringList>

#include <string_view>

namespace quillon {

/// Return and the keys held with it, by the names they have on the user's keyboard.
QString keyNames(ActionShortcutFlags flags, QChar separator);
/// Keys such as "Ctrl+Q", each by the name that it has on the user's keyboard.
QStringList keyNames(std::string_view keys);

} // namespace quillon
