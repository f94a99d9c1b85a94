#include "platform/linux/hotkey/X11Keyboard.h"

#include <QList>
#include <QString>

#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <utility>

namespace quillon {

namespace {

constexpr int MODIFIERS = 8;
constexpr xkb_level_index_t PLAIN_LEVEL = 0;
constexpr xkb_level_index_t SHIFT_LEVEL = 1;

// The events of the keyboard extension share one number, and their second byte tells them apart.
// These are defined here because the extension's own header does not compile as C++.
constexpr std::uint8_t NEW_KEYBOARD_NOTIFY = 0;
constexpr std::uint8_t MAP_NOTIFY = 1;
/// This bit is set in the type of events that another client has sent.
constexpr unsigned SENT_EVENT = 0x80;

bool isModifier(xkb_keysym_t symbol)
{
    const auto isBetween = [symbol](xkb_keysym_t first, xkb_keysym_t last) {
        return first <= symbol && symbol <= last;
    };
    return isBetween(XKB_KEY_Shift_L, XKB_KEY_Hyper_R) ||
           isBetween(XKB_KEY_ISO_Lock, XKB_KEY_ISO_Level5_Lock) || symbol == XKB_KEY_Num_Lock ||
           symbol == XKB_KEY_Mode_switch;
}

} // namespace

X11Keyboard::X11Keyboard(xcb_connection_t *x)
{
    readKeymap(x);
    if (keymap_)
        readModifiers(x);
}

void X11Keyboard::readKeymap(xcb_connection_t *x)
{
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
        xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref);
    if (!context ||
        xkb_x11_setup_xkb_extension(x, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr,
                                    &extensionEvent_, nullptr) == 0)
        return;
    if (const int device = xkb_x11_get_core_keyboard_device_id(x); device >= 0)
        keymap_.reset(
            xkb_x11_keymap_new_from_device(context.get(), x, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

bool X11Keyboard::isChangedBy(const xcb_generic_event_t &event) const
{
    const unsigned kind = event.response_type & ~SENT_EVENT;
    return kind == XCB_MAPPING_NOTIFY ||
           (extensionEvent_ != 0 && kind == extensionEvent_ &&
            (event.pad0 == NEW_KEYBOARD_NOTIFY || event.pad0 == MAP_NOTIFY));
}

void X11Keyboard::readModifiers(xcb_connection_t *x)
{
    const std::unique_ptr<xcb_get_modifier_mapping_reply_t, decltype(&std::free)> mapping(
        xcb_get_modifier_mapping_reply(x, xcb_get_modifier_mapping(x), nullptr), &std::free);
    if (!mapping)
        return;
    const std::span<const xcb_keycode_t> keys(
        xcb_get_modifier_mapping_keycodes(mapping.get()),
        static_cast<std::size_t>(xcb_get_modifier_mapping_keycodes_length(mapping.get())));
    const auto find = [&](std::uint16_t &mask, std::initializer_list<xkb_keysym_t> symbols) {
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (keys[i] == 0 ||
                std::ranges::find(symbols, symbolAt(keys[i], 0, PLAIN_LEVEL)) == symbols.end())
                continue;
            mask = static_cast<std::uint16_t>(1U << (i / (keys.size() / MODIFIERS)));
            return;
        }
    };
    find(alt_, {XKB_KEY_Alt_L, XKB_KEY_Alt_R});
    find(super_, {XKB_KEY_Super_L, XKB_KEY_Super_R});
    find(numLock_, {XKB_KEY_Num_Lock});
}

xkb_keysym_t X11Keyboard::symbolAt(xkb_keycode_t code, xkb_layout_index_t layout,
                                   xkb_level_index_t level) const
{
    const xkb_keysym_t *symbols = nullptr;
    const int count =
        xkb_keymap_key_get_syms_by_level(keymap_.get(), code, layout, level, &symbols);
    return count == 1 ? symbols[0] : XKB_KEY_NoSymbol;
}

std::vector<std::uint8_t> X11Keyboard::keysWith(xkb_keysym_t symbol, xkb_level_index_t level) const
{
    constexpr xkb_keycode_t LAST = 255;
    std::vector<std::uint8_t> found;
    const xkb_keycode_t last = std::min(xkb_keymap_max_keycode(keymap_.get()), LAST);
    for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap_.get()); code <= last; ++code) {
        const xkb_layout_index_t layouts = xkb_keymap_num_layouts_for_key(keymap_.get(), code);
        for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
            if (symbolAt(code, layout, level) != symbol)
                continue;
            found.push_back(static_cast<std::uint8_t>(code));
            break;
        }
    }
    return found;
}

std::vector<KeyGrab> X11Keyboard::grabsFor(const KeyCombination &keys) const
{
    const xkb_keysym_t symbol = symbolNamed(keys.key);
    if (!keymap_ || symbol == XKB_KEY_NoSymbol)
        return {};
    bool isShifted = keys.shift;
    std::vector<std::uint8_t> codes = keysWith(symbol, PLAIN_LEVEL);
    if (codes.empty()) {
        // "?" is typed with Shift on most keyboards, and the digits on some.
        codes = keysWith(symbol, SHIFT_LEVEL);
        isShifted = true;
    }
    unsigned modifiers = 0;
    for (const auto &[isHeld, bits] :
         {std::pair<bool, unsigned>{keys.control, XCB_MOD_MASK_CONTROL},
          {keys.alt, alt_},
          {isShifted, XCB_MOD_MASK_SHIFT},
          {keys.super, super_}})
        modifiers |= isHeld ? bits : 0U;
    std::vector<unsigned> locks{0U, XCB_MOD_MASK_LOCK};
    if (numLock_ != 0)
        locks.insert(locks.end(), {numLock_, numLock_ | unsigned{XCB_MOD_MASK_LOCK}});
    std::vector<KeyGrab> grabs;
    for (const std::uint8_t code : codes)
        for (const unsigned lock : locks)
            grabs.push_back({code, static_cast<std::uint16_t>(modifiers | lock)});
    return grabs;
}

std::string X11Keyboard::keyName(std::uint32_t keyCode) const
{
    if (!keymap_)
        return {};
    const xkb_layout_index_t layouts = xkb_keymap_num_layouts_for_key(keymap_.get(), keyCode);
    // The first layout that has a name decides, since a grab finds the key by any layout.
    for (xkb_layout_index_t layout = 0; layout < layouts; ++layout)
        if (std::string name = nameOfSymbol(symbolAt(keyCode, layout, PLAIN_LEVEL)); !name.empty())
            return name;
    return {};
}

xkb_keysym_t symbolNamed(const std::string &key)
{
    const auto characters = QString::fromStdString(key).toUcs4();
    xkb_keysym_t symbol = XKB_KEY_NoSymbol;
    if (characters.size() == 1)
        symbol = xkb_utf32_to_keysym(characters[0]);
    else if (!key.empty())
        symbol = xkb_keysym_from_name(key.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    return xkb_keysym_to_lower(symbol);
}

std::string nameOfSymbol(xkb_keysym_t symbol)
{
    if (symbol == XKB_KEY_NoSymbol || isModifier(symbol))
        return {};
    // Keys of the keypad type the same characters as others do.
    const std::uint32_t character = xkb_keysym_to_utf32(symbol);
    if (character > ' ' && character != 0x7F && xkb_utf32_to_keysym(character) == symbol) {
        const auto code = static_cast<char32_t>(character);
        return QString::fromUcs4(&code, 1).toStdString();
    }
    std::array<char, 64> name{};
    return xkb_keysym_get_name(symbol, name.data(), name.size()) > 0 ? name.data() : "";
}

} // namespace quillon
