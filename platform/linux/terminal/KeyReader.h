#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// One key press at a terminal, or a part of a text that was pasted there.
struct TerminalKey
{
    enum class Kind : std::uint8_t
    {
        /// The bytes of text are to be inserted. They hold no control characters.
        text,
        /// Control with the letter in text, a small one.
        control,
        up,
        down,
        left,
        right,
        pageUp,
        pageDown,
        home,
        end,
        enter,
        escape,
        backspace,
        /// Alt with Backspace.
        wordBackspace,
        remove,
        /// A key that has no meaning here.
        other,
    };

    Kind kind = Kind::other;
    std::string text;

    friend bool operator==(const TerminalKey &, const TerminalKey &) = default;
};

/// Turns the bytes that a terminal sends into keys, by the sequences that ECMA-48 and xterm define,
/// which are those of every terminal in use.
class KeyReader
{
public:
    void add(std::string_view bytes) { bytes_ += bytes; }
    /// Returns the next key. Returns nothing while the bytes so far may be the beginning of one,
    /// unless no further bytes are to be expected: a lone escape then is the key of that name.
    std::optional<TerminalKey> next(bool isComplete);
    bool isEmpty() const { return bytes_.empty(); }

private:
    std::optional<TerminalKey> escaped(bool isComplete);
    std::optional<TerminalKey> sequence(bool isComplete);
    std::optional<TerminalKey> character(bool isComplete);
    TerminalKey take(std::size_t length, TerminalKey::Kind kind);

    std::string bytes_;
    /// Between the two sequences that enclose a pasted text, control characters are no keys.
    bool isPasting_ = false;
};

} // namespace quillon
