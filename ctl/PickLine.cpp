#include "ctl/PickLine.h"

#include "base/Utf8.h"

#include <algorithm>
#include <string_view>

namespace quillon {

bool PickLine::handle(const TerminalKey &key)
{
    switch (key.kind) {
    case TerminalKey::Kind::text:
        text_.insert(cursor_, key.text);
        cursor_ += key.text.size();
        return true;
    case TerminalKey::Kind::control:
        return handleControl(key.text.front());
    case TerminalKey::Kind::left:
        return moveTo(previousCharacter());
    case TerminalKey::Kind::right:
        return moveTo(nextCharacter());
    case TerminalKey::Kind::home:
        return moveTo(0);
    case TerminalKey::Kind::end:
        return moveTo(text_.size());
    case TerminalKey::Kind::backspace:
        return eraseTo(previousCharacter());
    case TerminalKey::Kind::wordBackspace:
        return eraseTo(previousWord());
    case TerminalKey::Kind::remove:
        return eraseTo(nextCharacter());
    default:
        return false;
    }
}

bool PickLine::handleControl(char letter)
{
    switch (letter) {
    case 'a':
        return moveTo(0);
    case 'e':
        return moveTo(text_.size());
    case 'b':
        return moveTo(previousCharacter());
    case 'f':
        return moveTo(nextCharacter());
    case 'd':
        return eraseTo(nextCharacter());
    case 'k':
        return eraseTo(text_.size());
    case 'u':
        return eraseTo(0);
    case 'w':
        return eraseTo(previousWord());
    default:
        return false;
    }
}

bool PickLine::moveTo(std::size_t place)
{
    const bool moves = place != cursor_;
    cursor_ = place;
    return moves;
}

/// Erases what is between the cursor and the place.
bool PickLine::eraseTo(std::size_t place)
{
    const std::size_t begin = std::min(place, cursor_);
    const std::size_t end = std::max(place, cursor_);
    text_.erase(begin, end - begin);
    cursor_ = begin;
    return begin != end;
}

std::size_t PickLine::previousCharacter() const
{
    std::size_t place = 0;
    const std::string_view text = text_;
    for (std::size_t next = 0; next < cursor_; next += firstUtf8Character(text.substr(next)).length)
        place = next;
    return place;
}

std::size_t PickLine::nextCharacter() const
{
    if (cursor_ == text_.size())
        return cursor_;
    return cursor_ + firstUtf8Character(std::string_view(text_).substr(cursor_)).length;
}

/// Returns where the word before the cursor begins. Blanks and slashes separate words.
std::size_t PickLine::previousWord() const
{
    const auto separates = [](char byte) { return byte == ' ' || byte == '/'; };
    std::size_t place = cursor_;
    while (place > 0 && separates(text_[place - 1]))
        --place;
    while (place > 0 && !separates(text_[place - 1]))
        --place;
    return place;
}

} // namespace quillon
