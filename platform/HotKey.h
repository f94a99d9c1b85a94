#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace quillon {

/// A key and the modifiers that are held with it.
struct KeyCombination
{
    bool control = false;
    bool alt = false;
    bool shift = false;
    bool super = false;
    /// The key's name in UTF-8: the character that the key types alone ("z", ","), or, for a key
    /// that types none or a blank, the X name of its symbol ("space", "F5", "Return").
    std::string key;

    friend bool operator==(const KeyCombination &, const KeyCombination &) = default;
};

/// Takes one key combination that reaches this program whichever window has the keyboard. Main
/// thread only.
class HotKey
{
public:
    enum class Outcome
    {
        /// The combination is ours, and presses are reported.
        grabbed,
        /// Another program has taken the combination.
        inUse,
        /// No key of the keyboard has this symbol.
        noSuchKey,
        /// The desktop, or the user whom it asked, refused.
        refused,
        /// No program can have a hot key of its own in this session.
        impossible,
    };
    /// Receives the outcome on the main thread.
    using Receiver = std::function<void(Outcome outcome)>;

    HotKey() = default;
    virtual ~HotKey() = default;
    HotKey(const HotKey &) = delete;
    HotKey &operator=(const HotKey &) = delete;

    /// Takes the combination in place of the one taken before. The outcome is reported at once or
    /// later, and again whenever it changes (for example with the keyboard layout, or when the
    /// desktop takes the key back), until the next grab() or release().
    virtual void grab(const KeyCombination &keys, Receiver receiver) = 0;
    virtual void release() = 0;
    /// Calls back once for each press; a key that is held counts once. There is one receiver.
    virtual void onPressed(std::function<void()> pressed) = 0;

    /// Returns false once it is known that every grab() is impossible.
    virtual bool isPossible() const = 0;
    /// Returns true when a grab() asks the user nothing, so that a key may be tried.
    virtual bool isSilent() const = 0;
    /// Returns KeyCombination::key for a key of this keyboard, given the toolkit's native scan code
    /// and native symbol of its press. The result is empty for a modifier and for a key without a
    /// symbol.
    virtual std::string keyName(std::uint32_t scanCode, std::uint32_t symbol) const = 0;
};

} // namespace quillon
