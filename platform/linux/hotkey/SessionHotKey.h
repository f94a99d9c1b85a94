#pragma once

#include "platform/HotKey.h"

#include <memory>

namespace quillon {

/// Makes the hot key that this session can have: by a grab on X11, by the desktop's portal on
/// Wayland (where a grab would seem to succeed and see nothing but X11 windows), and elsewhere one
/// whose grabs are impossible. The application object exists.
std::unique_ptr<HotKey> makeSessionHotKey();

} // namespace quillon
