#pragma once

#include <QString>

namespace quillon {

/// Returns the text that every window shows when a setting could not be written.
QString writeFault();

} // namespace quillon
