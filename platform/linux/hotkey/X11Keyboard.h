#pragma once

#include "platform/HotKey.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quillon {

/// The two numbers of an X key grab.
struct KeyGrab
{
    std::uint8_t keyCode;
    /// The modifiers are bits of the core protocol.
    std::uint16_t modifiers;
};

/// The keyboard of an X display as it was when this object was made.
class X11Keyboard
{
public:
    explicit X11Keyboard(xcb_connection_t *x);

    /// Returns every grab that the combination needs: each key with the symbol, under each state of
    /// the lock keys. The list is empty when no key has the symbol.
    std::vector<KeyGrab> grabsFor(const KeyCombination &keys) const;
    /// Returns the name as HotKey::keyName() does.
    std::string keyName(std::uint32_t keyCode) const;
    /// Returns true for an event that reports that the keyboard has changed. Qt asks for these
    /// events.
    bool isChangedBy(const xcb_generic_event_t &event) const;

private:
    /// Returns the keys that have the symbol at this shift level of some layout.
    std::vector<std::uint8_t> keysWith(xkb_keysym_t symbol, xkb_level_index_t level) const;
    xkb_keysym_t symbolAt(xkb_keycode_t code, xkb_layout_index_t layout,
                          xkb_level_index_t level) const;
    void readKeymap(xcb_connection_t *x);
    void readModifiers(xcb_connection_t *x);

    std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap_{nullptr, &xkb_keymap_unref};
    /// The number of the keyboard extension's events, or 0 when there is no extension.
    std::uint8_t extensionEvent_ = 0;
    // The bit of the core protocol for each modifier, which depends on the keyboard.
    std::uint16_t alt_ = XCB_MOD_MASK_1;
    std::uint16_t super_ = XCB_MOD_MASK_4;
    std::uint16_t numLock_ = 0;
};

/// Returns the symbol that a KeyCombination's key names, or XKB_KEY_NoSymbol.
xkb_keysym_t symbolNamed(const std::string &key);
/// Returns the KeyCombination's key for a symbol. The result is empty for a modifier and for no
/// symbol.
std::string nameOfSymbol(xkb_keysym_t symbol);

} // namespace quillon
