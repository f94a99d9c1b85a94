#pragma once

#include "platform/HotKey.h"

#include <memory>

namespace quillon {

/// The hot key as this session can have it: by a grab on X11, by the desktop's portal on Wayland
/// (where a grab would seem to succeed and see nothing but X11 windows), and elsewhere one that is
/// impossible. Wants the application object.
std::unique_ptr<HotKey> makeSessionHotKey();

} // namespace quillon
