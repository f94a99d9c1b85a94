#pragma once

#include <QString>

namespace quillon {

/// What every window says where a setting could not be written.
QString writeFault();

} // namespace quillon
