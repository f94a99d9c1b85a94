#pragma once

#include "platform/HotKey.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quillon {

/// What an X key grab is made of.
struct KeyGrab
{
    std::uint8_t keyCode;
    /// Bits of the core protocol.
    std::uint16_t modifiers;
};

/// The keyboard of an X display as it was when this was made.
class X11Keyboard
{
public:
    explicit X11Keyboard(xcb_connection_t *x);

    /// Every grab that the combination takes: each key with the symbol, under each state of the
    /// lock keys. Empty when no key has it.
    std::vector<KeyGrab> grabsFor(const KeyCombination &keys) const;
    /// As HotKey::keyName().
    std::string keyName(std::uint32_t keyCode) const;
    /// True for an event that tells that the keyboard is another one now. Qt asks for these.
    bool isChangedBy(const xcb_generic_event_t &event) const;

private:
    /// The keys that have the symbol at this shift level of some layout.
    std::vector<std::uint8_t> keysWith(xkb_keysym_t symbol, xkb_level_index_t level) const;
    xkb_keysym_t symbolAt(xkb_keycode_t code, xkb_layout_index_t layout,
                          xkb_level_index_t level) const;
    void readKeymap(xcb_connection_t *x);
    void readModifiers(xcb_connection_t *x);

    std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap_{nullptr, &xkb_keymap_unref};
    /// The number of the keyboard extension's events, 0 where the display lacks it.
    std::uint8_t extensionEvent_ = 0;
    // Bits of the core protocol; which modifier does what is the keyboard's to say.
    std::uint16_t alt_ = XCB_MOD_MASK_1;
    std::uint16_t super_ = XCB_MOD_MASK_4;
    std::uint16_t numLock_ = 0;
};

/// The symbol that a KeyCombination's key names; XKB_KEY_NoSymbol when there is none.
xkb_keysym_t symbolNamed(const std::string &key);
/// The key that a KeyCombination has for a symbol; empty for modifiers and for no symbol.
std::string nameOfSymbol(xkb_keysym_t symbol);

} // namespace quillon
