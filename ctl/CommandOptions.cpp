#include "ctl/CommandOptions.h"

#include "base/EditDistance.h"
#include "matching/MatchOrder.h"

#include <algorithm>

namespace quillon {

namespace {

/// Leaves options without a group out of the usage line.
class UsageFormatter final : public CLI::Formatter
{
public:
    std::string make_option_usage( // NOLINT(readability-identifier-naming): the library's name
        const CLI::Option *option) const override
    {
        return option->get_group().empty() ? "" : CLI::Formatter::make_option_usage(option);
    }
};

} // namespace

std::string NumberRange::description() const
{
    const bool isOpen = most == NumberRange{}.most;
    return isOpen ? "of " + std::to_string(least) + " or more"
                  : "from " + std::to_string(least) + " to " + std::to_string(most);
}

void addSeconds(CLI::App &command, const std::string &option,
                const std::function<void(double seconds)> &set, const std::string &help)
{
    const auto read = [set, option](const std::string &text) {
        double seconds = 0;
        const char *end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data(), end, seconds);
        constexpr double MOST = 1e6;
        if (error != std::errc() || rest != end || !(seconds >= 0 && seconds <= MOST))
            throw CLI::ValidationError(option, "not a time in seconds: " + text);
        set(seconds);
    };
    command.add_option_function<std::string>(option, read, help)->type_name("S");
}

void addOrder(CLI::App &command, const std::function<void(const std::string &name)> &set,
              const std::string &help)
{
    const auto read = [set](const std::string &text) {
        if (!matchOrderNamed(text))
            throw CLI::ValidationError("--order", "not an order, \"path\" or \"names\": " + text);
        set(text);
    };
    command.add_option_function<std::string>("--order", read, help)->type_name("ORDER");
}

CLI::Option *addTexts(CLI::App &command, int argc, const std::string &name,
                      std::vector<std::string> &texts, const std::string &help)
{
    const auto take = [&texts](const std::string &text) { texts.push_back(text); };
    CLI::Option *first = command.add_option_function<std::string>(name, take, help)->type_name("");
    for (int i = 1; i < argc; ++i)
        command.add_option_function<std::string>(name + std::to_string(i), take)->group("");
    return first;
}

std::shared_ptr<CLI::FormatterBase> usageFormatter()
{
    return std::make_shared<UsageFormatter>();
}

std::string unknownCommand(const CLI::App &app, const std::string &typed)
{
    std::string all;
    std::string nearest;
    // If more than half of the letters are wrong, the user meant another word.
    std::size_t fewest = typed.size() / 2 + 1;
    for (const CLI::App *command : app.get_subcommands({})) {
        const std::string &name = command->get_name();
        all.append(all.empty() ? "" : ", ").append(name);
        const std::size_t edits = editDistance(typed, name);
        if (edits < fewest) {
            fewest = edits;
            nearest = name;
        }
    }
    const std::string hint =
        nearest.empty() ? "the commands are " + all : "did you mean \"" + nearest + "\"?";
    std::string line = "there is no command \"" + typed + "\"; " + hint;
    std::ranges::replace(line, '\n', ' ');
    return line;
}

} // namespace quillon
