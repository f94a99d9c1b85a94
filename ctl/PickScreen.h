#pragma once

#include "ctl/PickLine.h"
#include "platform/linux/terminal/Terminal.h"
#include "results/SearchBaseResult.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon {

/// Lays the query and its rows out as lines of a terminal.
class PickScreen
{
public:
    struct Contents
    {
        const PickLine &line;
        const std::vector<SearchBaseResultRef> &rows;
        /// The selected row, counted from 0.
        std::size_t selected = 0;
        /// A line of ASCII below the rows; empty for none.
        std::string_view note;
    };

    /// "~" stands for this home folder in the rows. Without colours, marked letters are bold.
    PickScreen(std::string home, bool areColoursWanted)
        : home_(std::move(home)), areColoursWanted_(areColoursWanted)
    {}

    /// Returns as many lines as the size has rows, the query first. Rows that do not fit are
    /// scrolled, so that the selected one is seen. A path that is too long loses its beginning.
    TerminalFrame frame(const Contents &contents, Terminal::Size size);
    /// Returns how many rows of a list fit on the lines.
    static std::size_t rowsOf(Terminal::Size size);

private:
    std::string rowLine(const SearchBaseResult &row, bool isSelected, int columns) const;

    const std::string home_;
    const bool areColoursWanted_;
    /// The row in the first line of the list.
    std::size_t firstRow_ = 0;
};

} // namespace quillon
