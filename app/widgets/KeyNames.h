#pragma once

#include "actions/ActionShortcutFlags.h"

#include <QString>

namespace quillon {

/// Return and the keys held with it, by the names they have on the user's keyboard.
QString keyNames(ActionShortcutFlags flags, QChar separator);

} // namespace quillon
