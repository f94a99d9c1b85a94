#include "platform/linux/terminal/KeyReader.h"

#include "base/Utf8.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

using Kind = TerminalKey::Kind;

constexpr char ESCAPE = '\x1b';
constexpr char DELETE = '\x7f';
/// A longer sequence is none; its bytes are dropped one key at a time.
constexpr std::size_t LONGEST_SEQUENCE = 32;

bool isControl(char byte)
{
    return static_cast<unsigned char>(byte) < 0x20 || byte == DELETE;
}

/// Returns the key of a sequence by its last byte, as the arrows send it.
Kind kindOfFinal(char final)
{
    switch (final) {
    case 'A':
        return Kind::up;
    case 'B':
        return Kind::down;
    case 'C':
        return Kind::right;
    case 'D':
        return Kind::left;
    case 'H':
        return Kind::home;
    case 'F':
        return Kind::end;
    case 'M':
        return Kind::enter; // of the digits
    default:
        return Kind::other;
    }
}

/// Returns the key of a sequence that ends with "~", by its first number.
Kind kindOfNumber(std::string_view number)
{
    if (number == "1" || number == "7")
        return Kind::home;
    if (number == "4" || number == "8")
        return Kind::end;
    if (number == "3")
        return Kind::remove;
    if (number == "5")
        return Kind::pageUp;
    return number == "6" ? Kind::pageDown : Kind::other;
}

Kind kindOfControl(char byte)
{
    switch (byte) {
    case '\r':
    case '\n':
    case '\t': // opens a row, as in the panel
        return Kind::enter;
    case '\b':
    case DELETE:
        return Kind::backspace;
    default:
        return byte >= 1 && byte <= 26 ? Kind::control : Kind::other;
    }
}

} // namespace

std::optional<TerminalKey> KeyReader::next(bool isComplete)
{
    if (bytes_.empty())
        return std::nullopt;
    const char first = bytes_.front();
    if (first == ESCAPE)
        return escaped(isComplete);
    if (!isControl(first))
        return character(isComplete);
    if (isPasting_) {
        bytes_.erase(0, 1);
        return TerminalKey{Kind::text, " "};
    }
    TerminalKey key = take(1, kindOfControl(first));
    if (key.kind == Kind::control)
        key.text = static_cast<char>(first + 'a' - 1);
    return key;
}

/// Reads what begins with an escape: the key itself, a key held with Alt, or a sequence.
std::optional<TerminalKey> KeyReader::escaped(bool isComplete)
{
    if (bytes_.size() == 1)
        return isComplete ? std::optional(take(1, Kind::escape)) : std::nullopt;
    switch (bytes_[1]) {
    case ESCAPE:
        return take(1, Kind::escape);
    case '[':
    case 'O':
        return sequence(isComplete);
    case DELETE:
    case '\b':
        return take(2, Kind::wordBackspace);
    default:
        return take(2, Kind::other);
    }
}

std::optional<TerminalKey> KeyReader::sequence(bool isComplete)
{
    const std::size_t limit = std::min(bytes_.size(), LONGEST_SEQUENCE);
    std::size_t end = 2;
    // Parameters are digits and punctuation; a byte from "@" to "~" ends the sequence.
    while (end < limit && bytes_[end] >= ' ' && bytes_[end] < '@')
        ++end;
    if (end == bytes_.size() && end < LONGEST_SEQUENCE && !isComplete)
        return std::nullopt;
    if (end == limit || bytes_[end] < '@' || bytes_[end] > '~')
        return take(end, Kind::other);
    const std::string parameters = bytes_.substr(2, end - 2);
    const char final = bytes_[end];
    const std::string number = parameters.substr(0, parameters.find(';'));
    const TerminalKey key = take(end + 1, final == '~' ? kindOfNumber(number) : kindOfFinal(final));
    if (final == '~' && (number == "200" || number == "201")) {
        isPasting_ = number == "200";
        return TerminalKey{};
    }
    return key;
}

/// Reads the bytes up to the next control character, as one text.
std::optional<TerminalKey> KeyReader::character(bool isComplete)
{
    std::string text;
    std::size_t end = 0;
    while (end < bytes_.size() && !isControl(bytes_[end])) {
        const std::string_view rest = std::string_view(bytes_).substr(end);
        const Utf8Character first = firstUtf8Character(rest);
        const bool mayGoOn = !first.isValid && rest.size() < 4 && !isComplete &&
                             std::ranges::none_of(rest, isControl);
        if (mayGoOn)
            break;
        // The other control characters take two bytes each.
        if (!first.isValid || first.codePoint < 0x80 || first.codePoint >= 0xa0)
            text += rest.substr(0, first.length);
        end += first.length;
    }
    if (end == 0)
        return std::nullopt;
    bytes_.erase(0, end);
    return TerminalKey{text.empty() ? Kind::other : Kind::text, std::move(text)};
}

TerminalKey KeyReader::take(std::size_t length, TerminalKey::Kind kind)
{
    bytes_.erase(0, length);
    return {.kind = kind, .text = {}};
}

} // namespace quillon
