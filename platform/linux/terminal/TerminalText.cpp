#include "platform/linux/terminal/TerminalText.h"

#include <glib.h>

#include <cstdlib>
#include <string_view>

#include <unistd.h>

namespace quillon {

int columnsOf(char32_t character)
{
    if (g_unichar_iszerowidth(character) != 0)
        return 0;
    return g_unichar_iswide(character) != 0 ? 2 : 1;
}

bool isTerminal(std::FILE *stream)
{
    return isatty(fileno(stream)) == 1;
}

bool mayColour(std::FILE *stream)
{
    const char *kind = std::getenv("TERM");
    return isTerminal(stream) && areColoursWanted() && kind != nullptr &&
           std::string_view(kind) != "dumb";
}

bool areColoursWanted()
{
    const char *refused = std::getenv("NO_COLOR");
    return refused == nullptr || *refused == '\0';
}

} // namespace quillon
