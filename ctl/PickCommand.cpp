#include "ctl/PickCommand.h"

#include "ctl/CommandLine.h"
#include "ctl/FindCommand.h"
#include "ctl/Output.h"
#include "ctl/PickLine.h"
#include "ctl/PickScreen.h"
#include "ctl/PickSource.h"
#include "platform/linux/terminal/Terminal.h"
#include "platform/linux/terminal/TerminalText.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;
using Kind = TerminalKey::Kind;

/// The exit status when the user leaves without a choice, as shells have it for Ctrl+C.
constexpr int LEFT = 130;
/// While folders are being read, the rows are renewed this often.
constexpr auto RENEWAL = 100ms;
/// The time for which a choice without asking waits for folders that are being read.
constexpr auto READING_PATIENCE = 1s;

/// The panel on a terminal. It ends with a choice, or without one.
class Picker
{
public:
    struct Ending
    {
        int status = SUCCESS;
        std::string path;
        std::optional<int> signal;
    };

    Picker(PickSource &source, Terminal &terminal, std::optional<std::size_t> height,
           std::string query)
        : source_(source),
          terminal_(terminal),
          height_(height),
          line_(std::move(query)),
          screen_(homeFolder(), areColoursWanted())
    {
        search();
    }

    Ending run()
    {
        for (;;) {
            const bool isReading = source_.isReading();
            show(isReading);
            Terminal::Event event = terminal_.next(
                isReading ? std::optional<std::chrono::milliseconds>(RENEWAL) : std::nullopt);
            // Keys that have come together are answered together.
            for (; event.kind == Terminal::Event::Kind::key; event = terminal_.next(0ms)) {
                if (const auto ending = handle(event.key))
                    return *ending;
            }
            if (event.kind == Terminal::Event::Kind::ended)
                return {.status = LEFT,
                        .path = {},
                        .signal = terminal_.endingSignal().value_or(SIGHUP)};
            if (!searchIfChanged() && isReading)
                renew();
        }
    }

private:
    static std::string homeFolder()
    {
        const char *home = std::getenv("HOME");
        return home == nullptr ? "" : home;
    }

    Terminal::Size size() const
    {
        Terminal::Size size = terminal_.size();
        // The line with the cursor stays.
        if (height_)
            size.rows = std::max(std::min(static_cast<int>(*height_), size.rows - 1), 1);
        return size;
    }

    void show(bool isReading)
    {
        std::string_view note;
        if (isReading)
            note = "reading the folders";
        else if (answer_.rows.empty())
            note = "nothing found";
        terminal_.show(screen_.frame({line_, answer_.rows, selected_, note}, size()));
    }

    void search()
    {
        searched_ = line_.text();
        answer_ = source_.answer(searched_);
        selected_ = answer_.selected;
    }

    bool searchIfChanged()
    {
        const bool isChanged = line_.text() != searched_;
        if (isChanged)
            search();
        return isChanged;
    }

    /// Looks for further rows, while the row that the user has moved to stays selected.
    void renew()
    {
        const auto former = std::exchange(answer_, source_.answer(line_.text()));
        if (selected_ == former.selected) {
            selected_ = answer_.selected;
            return;
        }
        const auto found = std::ranges::find(answer_.rows, former.rows[selected_]->path(),
                                             &SearchBaseResult::path);
        selected_ = found == answer_.rows.end()
                        ? answer_.selected
                        : static_cast<std::size_t>(found - answer_.rows.begin());
    }

    /// Returns an ending when the key ends the choice.
    std::optional<Ending> handle(const TerminalKey &key)
    {
        const bool isControl = key.kind == Kind::control;
        if (key.kind == Kind::enter)
            return choice();
        if (key.kind == Kind::escape || (isControl && (key.text == "c" || key.text == "g")) ||
            (isControl && key.text == "d" && line_.text().empty()))
            return Ending{.status = LEFT, .path = {}, .signal = {}};
        if (line_.handle(key))
            return std::nullopt;
        searchIfChanged();
        if (answer_.rows.empty())
            return std::nullopt;

        const auto page = static_cast<std::ptrdiff_t>(PickScreen::rowsOf(size()));
        if (key.kind == Kind::down || (isControl && key.text == "n"))
            move(1);
        else if (key.kind == Kind::up || (isControl && key.text == "p"))
            move(-1);
        else if (key.kind == Kind::pageDown)
            move(page);
        else if (key.kind == Kind::pageUp)
            move(-page);
        else if (key.kind == Kind::home)
            selected_ = 0;
        else if (key.kind == Kind::end)
            selected_ = answer_.rows.size() - 1;
        return std::nullopt;
    }

    void move(std::ptrdiff_t rows)
    {
        const auto last = static_cast<std::ptrdiff_t>(answer_.rows.size()) - 1;
        selected_ = static_cast<std::size_t>(
            std::clamp(static_cast<std::ptrdiff_t>(selected_) + rows, std::ptrdiff_t{0}, last));
    }

    Ending choice()
    {
        searchIfChanged();
        if (answer_.rows.empty())
            return {.status = NOTHING_FOUND, .path = {}, .signal = {}};
        return {.status = SUCCESS, .path = answer_.rows[selected_]->path(), .signal = {}};
    }

    PickSource &source_;
    Terminal &terminal_;
    const std::optional<std::size_t> height_;
    PickLine line_;
    PickScreen screen_;
    PickSource::Answer answer_;
    std::string searched_;
    std::size_t selected_ = 0;
};

/// Lets the user choose. Returns nothing, with a line on standard error, when there is no terminal.
std::optional<Picker::Ending> pick(PickSource &source, std::optional<std::size_t> height,
                                   const std::string &query)
{
    std::error_code error;
    const auto place = height ? Terminal::Place::below : Terminal::Place::screen;
    const auto terminal = Terminal::open(place, error);
    if (terminal)
        return Picker(source, *terminal, height, query).run();
    complain("/dev/tty: " + error.message());
    return std::nullopt;
}

} // namespace

int PickCommand::run(Output &output) const
{
    Terminal::holdSignals();
    PickSource source;
    if (!source.prepare())
        return FIND_FAILURE;
    const std::string query = joinedWords(words);
    std::optional<Picker::Ending> ending;
    if (best && !query.empty()) {
        source.haveFoldersBeenRead(READING_PATIENCE);
        const PickSource::Answer answer = source.answer(query);
        if (answer.rows.empty() && !source.isReading())
            return NOTHING_FOUND;
        if (auto path = source.clearPath(query, answer))
            ending = Picker::Ending{.status = SUCCESS, .path = std::move(*path), .signal = {}};
    }
    if (!ending)
        ending = pick(source, height, query);
    if (!ending)
        return FIND_FAILURE;
    if (ending->signal)
        Terminal::endBySignal(*ending->signal);
    if (ending->status == SUCCESS)
        output.write(ending->path + (nulSeparated ? '\0' : '\n'));
    const int status = output.finish() ? ending->status : FIND_FAILURE;
    // A folder that is being read may be on a disk that does not answer.
    if (source.isReading())
        std::_Exit(status);
    return status;
}

} // namespace quillon
