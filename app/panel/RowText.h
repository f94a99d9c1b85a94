#pragma once

#include "results/SearchBaseResult.h"

#include <QString>

#include <string_view>
#include <vector>

namespace quillon {

/// The text of a row as it is drawn. Positions count UTF-16 units of text.
struct RowText
{
    struct Span
    {
        int start = 0;
        int length = 0;
        friend bool operator==(const Span &, const Span &) = default;
    };

    /// Every invalid byte, control character and character that would turn the direction of the
    /// text stands as U+FFFD.
    QString text;
    /// Where the last component of a path begins; 0 for a text without "/".
    int nameStart = 0;
    /// Matched characters, in order. Ranges that overlap are joined to one span.
    std::vector<Span> matches;
};

/// The home folder is drawn as "~", which is a match where something in it matched. An empty home
/// leaves every path as it is.
RowText rowText(const SearchBaseResult &result, std::string_view home = {});

/// The text of a row as it is read out: what the item is called goes first.
QString spokenText(const SearchBaseResult &result);

/// The bytes as text for a person, marked as in RowText::text.
QString displayText(std::string_view bytes);

} // namespace quillon
