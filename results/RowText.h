#pragma once

#include "results/SearchBaseResult.h"

#include <QString>

#include <string_view>
#include <vector>

namespace quillon {

/// The text of a row as it is drawn. Positions count UTF-16 units of the text.
struct RowText
{
    struct Span
    {
        int start = 0;
        int length = 0;
        friend bool operator==(const Span &, const Span &) = default;
    };

    /// The characters that are drawn. U+FFFD replaces every invalid byte, control character and
    /// character that would turn the direction of the text.
    QString text;
    /// The position of the last component of a path; 0 for a text without "/".
    int nameStart = 0;
    /// The matched characters, in order. Overlapping ranges are joined to one span.
    std::vector<Span> matches;
};

/// Returns the text of a row with "~" in place of the home folder. "~" is a match if something in
/// the home folder's path matched. An empty home leaves every path as it is.
RowText rowText(const SearchBaseResult &result, std::string_view home = {});

/// Returns the text of a row as it is read out, which begins with the item's name.
QString spokenText(const SearchBaseResult &result);

/// Returns the bytes as text for a person, with U+FFFD as in RowText::text.
QString displayText(std::string_view bytes);

} // namespace quillon
