#pragma once

#include <cstdio>

namespace quillon {

/// Returns how many columns of a terminal a character takes: 2 for a wide one, 0 for one that is
/// drawn over the character before it, else 1.
int columnsOf(char32_t character);

/// Returns true when the stream is a terminal.
bool isTerminal(std::FILE *stream);

/// Returns true when a stream may be coloured: it is a terminal, and the environment has no
/// NO_COLOR and no terminal that is called dumb.
bool mayColour(std::FILE *stream);
/// Returns true unless the environment asks for no colours, by NO_COLOR.
bool areColoursWanted();

} // namespace quillon
