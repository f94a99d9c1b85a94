#pragma once

#include "platform/linux/terminal/KeyReader.h"

#include <cstddef>
#include <string>
#include <utility>

namespace quillon {

/// The line in which the query is typed, edited with the keys of shells. It may hold any bytes.
class PickLine
{
public:
    explicit PickLine(std::string text) : text_(std::move(text)), cursor_(text_.size()) {}

    const std::string &text() const { return text_; }
    /// Returns where the cursor stands, in bytes from the beginning.
    std::size_t cursor() const { return cursor_; }

    /// Carries the key out. Returns false when it is no key of the line, or would change nothing:
    /// Home at the beginning and End at the end are then free for the rows.
    bool handle(const TerminalKey &key);

private:
    bool handleControl(char letter);
    bool moveTo(std::size_t place);
    bool eraseTo(std::size_t place);
    std::size_t previousCharacter() const;
    std::size_t nextCharacter() const;
    std::size_t previousWord() const;

    std::string text_;
    std::size_t cursor_;
};

} // namespace quillon
