#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

// Names and queries are folded so that accents play no part in comparing them, nor the case of
// letters beyond ASCII: "Übergröße" becomes "Ubergrosse". Capital ASCII letters stay capitals in a
// name, since rankings look at them. A character that cannot be folded to as few bytes as it takes
// stays as it is, and so does a byte that is not part of a character. The folding is that of GLib.
// Safe from every thread.

/// Returns the folded name or path. Its letters stand at the places of the characters that they
/// come from, and the bytes that are left over there are NUL, so that it is as long as the text.
/// Absent where folding changes nothing, as in every text that is plain ASCII.
std::optional<std::string> foldedText(std::string_view text);

/// Returns the folded words of a query in small letters, with no bytes left over. Blanks and
/// slashes separate words.
std::vector<std::string> foldedWords(std::string_view query);

} // namespace quillon
