#pragma once

#include <CLI/CLI.hpp>

#include <charconv>
#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace quillon {

/// The whole numbers that an option takes.
struct NumberRange
{
    std::size_t least = 0;
    std::size_t most = std::numeric_limits<std::size_t>::max();

    bool holds(std::size_t number) const { return least <= number && number <= most; }
    std::string description() const;
};

/// Adds an option that is a whole number. The library's own reading accepts hexadecimal digits and
/// lets numbers wrap round.
template <typename Number>
void addNumber(CLI::App &command, const std::string &option, Number &value,
               const NumberRange &range, const std::string &help)
{
    const auto read = [&value, range, option](const std::string &text) {
        std::size_t number = 0;
        const char *end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data(), end, number);
        if (error != std::errc() || rest != end || !range.holds(number))
            throw CLI::ValidationError(option,
                                       "not a whole number " + range.description() + ": " + text);
        value = number;
    };
    command.add_option_function<std::string>(option, read, help)->type_name("N");
}

/// Adds an option that is a time of zero seconds or more, up to days.
void addSeconds(CLI::App &command, const std::string &option,
                const std::function<void(double seconds)> &set, const std::string &help);

/// Adds the option that names the order of the answers.
void addOrder(CLI::App &command, const std::function<void(const std::string &name)> &set,
              const std::string &help);

/// Adds arguments without a name, which the user may type as often as the command line has words.
/// Each has a place of its own, since the library would split a folder named "[a,b]" in a list.
/// Returns the first place.
CLI::Option *addTexts(CLI::App &command, int argc, const std::string &name,
                      std::vector<std::string> &texts, const std::string &help);

/// Returns a formatter that leaves options without a group out of the usage line, as the list of
/// options does.
std::shared_ptr<CLI::FormatterBase> usageFormatter();

/// Returns the message for a word that is no command. It names the command that was probably meant,
/// or else all commands.
std::string unknownCommand(const CLI::App &app, const std::string &typed);

} // namespace quillon
