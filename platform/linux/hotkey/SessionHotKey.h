#pragma once

#include "platform/HotKey.h"

#include <memory>

namespace quillon {

/// Makes the hot key that this session can have: by a grab on X11, and by the desktop's portal on
/// Wayland, where a grab would seem to succeed and see only X11 windows. In any other session,
/// every grab of the hot key is impossible. The application object exists before this call.
std::unique_ptr<HotKey> makeSessionHotKey();

} // namespace quillon
