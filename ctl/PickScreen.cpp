#include "ctl/PickScreen.h"

#include "platform/linux/terminal/TerminalText.h"
#include "results/RowText.h"

#include <QList>

#include <algorithm>
#include <iterator>

namespace quillon {

namespace {

constexpr std::string_view PROMPT = "> ";
constexpr int PROMPT_COLUMNS = 2;

constexpr std::string_view PLAIN = "\x1b[0m";
constexpr std::string_view SELECTED = "\x1b[0;7m";
constexpr std::string_view FAINT = "\x1b[2m";
constexpr std::string_view BOLD = "\x1b[1m";
constexpr std::string_view BOLD_COLOUR = "\x1b[1;31m";

/// One character on the terminal.
struct Cell
{
    std::string bytes;
    int columns = 1;
    /// The place of the character in the text that it was taken from.
    int place = 0;
};

std::vector<Cell> cellsOf(const QString &text)
{
    std::vector<Cell> cells;
    for (int i = 0; i < text.size();) {
        const int length = i + 1 < text.size() && text.at(i).isHighSurrogate() ? 2 : 1;
        const QString character = text.mid(i, length);
        cells.push_back({character.toStdString(),
                         columnsOf(static_cast<char32_t>(character.toUcs4().first())), i});
        i += length;
    }
    return cells;
}

/// Returns the first of the cells that fit into the columns together with all that follow it.
std::vector<Cell>::const_iterator firstThatFits(const std::vector<Cell> &cells, int columns)
{
    auto first = cells.end();
    for (int used = 0; first != cells.begin(); --first) {
        used += std::prev(first)->columns;
        if (used > columns)
            break;
    }
    // A character that is drawn over the one before it does not stand alone.
    while (first != cells.end() && first->columns == 0)
        ++first;
    return first;
}

/// Returns the prompt and the part of the query around the cursor that fits into the columns. Sets
/// the column of the cursor.
std::string queryLine(const PickLine &line, int columns, int &cursorColumn)
{
    const std::string_view text = line.text();
    const std::vector<Cell> before = cellsOf(displayText(text.substr(0, line.cursor())));
    std::string shown(PROMPT);
    cursorColumn = PROMPT_COLUMNS;
    // One column stays free for the cursor.
    for (auto cell = firstThatFits(before, columns - 1); cell != before.end(); ++cell) {
        shown += cell->bytes;
        cursorColumn += cell->columns;
    }
    int column = cursorColumn;
    for (const Cell &cell : cellsOf(displayText(text.substr(line.cursor())))) {
        column += cell.columns;
        if (column > columns + PROMPT_COLUMNS)
            break;
        shown += cell.bytes;
    }
    return shown;
}

} // namespace

std::size_t PickScreen::rowsOf(Terminal::Size size)
{
    return static_cast<std::size_t>(std::max(size.rows - 1, 1));
}

TerminalFrame PickScreen::frame(const Contents &contents, Terminal::Size size)
{
    // The last column stays empty, since terminals differ in what a character there does.
    const int columns = std::max(size.columns - 1 - PROMPT_COLUMNS, 1);
    TerminalFrame frame;
    frame.lines.push_back(queryLine(contents.line, columns, frame.cursorColumn));

    const std::size_t visible = rowsOf(size);
    const std::size_t count = contents.rows.size();
    firstRow_ = std::min(firstRow_, count > visible ? count - visible : 0);
    firstRow_ = std::min(firstRow_, contents.selected);
    if (contents.selected >= firstRow_ + visible)
        firstRow_ = contents.selected - visible + 1;
    for (std::size_t i = firstRow_; i < std::min(count, firstRow_ + visible); ++i)
        frame.lines.push_back(rowLine(*contents.rows[i], i == contents.selected, columns));
    if (!contents.note.empty() && frame.lines.size() <= visible) {
        std::string note(FAINT);
        note.append("  ").append(contents.note.substr(0, static_cast<std::size_t>(columns)));
        frame.lines.push_back(note.append(PLAIN));
    }
    frame.lines.resize(static_cast<std::size_t>(std::max(size.rows, 1)));
    return frame;
}

std::string PickScreen::rowLine(const SearchBaseResult &row, bool isSelected, int columns) const
{
    const RowText text = rowText(row, home_);
    const std::vector<Cell> cells = cellsOf(text.text);
    auto cell = firstThatFits(cells, columns);
    std::string line(isSelected ? SELECTED : PLAIN);
    line += isSelected ? PROMPT : "  ";
    if (cell != cells.begin()) {
        cell = firstThatFits(cells, columns - 1);
        line += "…";
    }
    bool wasMarked = false;
    for (; cell != cells.end(); ++cell) {
        const bool isMarked = std::ranges::any_of(text.matches, [&](const RowText::Span &span) {
            return span.start <= cell->place && cell->place < span.start + span.length;
        });
        if (isMarked && !wasMarked)
            line += areColoursWanted_ ? BOLD_COLOUR : BOLD;
        else if (!isMarked && wasMarked)
            line += isSelected ? SELECTED : PLAIN;
        line += cell->bytes;
        wasMarked = isMarked;
    }
    return line.append(PLAIN);
}

} // namespace quillon
