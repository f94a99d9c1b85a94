#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace quillon {

/// A key and the modifiers held with it.
struct KeyCombination
{
    bool control = false;
    bool alt = false;
    bool shift = false;
    bool super = false;
    /// UTF-8: the character that the key types alone ("z", ","), or where it types none or a blank
    /// the name of its symbol as X has it ("space", "F5", "Return").
    std::string key;

    friend bool operator==(const KeyCombination &, const KeyCombination &) = default;
};

/// One key combination that reaches this program whichever window has the keyboard. Main thread
/// only.
class HotKey
{
public:
    enum class Outcome
    {
        /// Presses are reported.
        grabbed,
        /// Another program has taken the combination.
        inUse,
        /// No key of the keyboard has this symbol.
        noSuchKey,
        /// The desktop, or the user whom it asked, said no.
        refused,
        /// No program can have a hot key of its own in this session.
        impossible,
    };
    using Told = std::function<void(Outcome outcome)>;

    HotKey() = default;
    virtual ~HotKey() = default;
    HotKey(const HotKey &) = delete;
    HotKey &operator=(const HotKey &) = delete;

    /// Takes the combination in place of the one taken before. Told at once or later, and again
    /// whenever the outcome changes (another keyboard layout, the desktop takes the key back),
    /// until the next grab() or release().
    virtual void grab(const KeyCombination &keys, Told told) = 0;
    virtual void release() = 0;
    /// A key that is held counts once. One receiver.
    virtual void onPressed(std::function<void()> pressed) = 0;

    /// False once it is known that every grab() would be impossible.
    virtual bool isPossible() const = 0;
    /// True when a grab() asks the user nothing, so that one may be made for trial.
    virtual bool isSilent() const = 0;
    /// What KeyCombination::key is for a key of this keyboard, given the toolkit's native scan code
    /// and native symbol of its press. Empty for a modifier and a key without a symbol.
    virtual std::string keyName(std::uint32_t scanCode, std::uint32_t symbol) const = 0;
};

} // namespace quillon
