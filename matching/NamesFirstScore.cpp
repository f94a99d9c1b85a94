#include "matching/NamesFirstScore.h"

#include "matching/FuzzyScore.h"

#include <algorithm>
#include <array>

namespace quillon {

using scoring::lower;

namespace namesfirst {

namespace {

/// Stands for minus infinity. What is added to it over a whole text does not lift it to LOWEST.
constexpr int NO_SCORE = -1'000'000;

} // namespace

int start(char byte, char previous)
{
    if (byte == '/')
        return START_AT_SLASH;
    // The same bytes begin a name or a word as in the order by the whole path.
    constexpr std::array<int, scoring::PLACES> STARTS{START_INSIDE, START_OF_NAME, START_OF_WORD,
                                                      START_OF_WORD};
    return STARTS[static_cast<std::size_t>(scoring::placeOf(byte, previous))];
}

State::State(std::size_t queryLength) : best_(queryLength, NO_SCORE), ending_(queryLength, NO_SCORE)
{}

void State::passParent(std::string_view query, std::string_view name, std::vector<Step> *steps)
{
    char previous = '/';
    for (const char byte : name) {
        passByte(query, byte, previous, 0, 0, steps);
        previous = byte;
    }
    passByte(query, '/', previous, LEVEL_BETWEEN, 0, steps);
}

void State::passOwnName(std::string_view query, std::string_view name, std::vector<Step> *steps)
{
    char previous = '/';
    int lead = 0;
    for (const char byte : name) {
        passByte(query, byte, previous, GAP_IN_NAME, lead, steps);
        previous = byte;
        lead += GAP_IN_NAME;
    }
}

/// The lead is what the bytes before cost a way that matches none of them.
void State::passByte(std::string_view query, char byte, char previous, int gap, int lead,
                     std::vector<Step> *steps)
{
    const int earned = start(byte, previous);
    const std::size_t n = query.size();
    const std::size_t firstStep = steps == nullptr ? 0 : steps->size();
    if (steps != nullptr)
        steps->resize(firstStep + n, isPassed);
    // The last row comes first, because each row reads the values that the row above had before
    // this byte.
    for (std::size_t i = n; i-- > 0;) {
        const bool isLast = i == n - 1;
        const int passed = best_[i] + (byte == '/' && isLast ? LEVEL_BELOW : gap);
        if (lower(query[i]) != lower(byte)) {
            ending_[i] = isWordSeparator(byte) ? ending_[i] + SEPARATOR_IN_RUN : NO_SCORE;
            best_[i] = passed;
            continue;
        }
        const int apart = (i == 0 ? lead : best_[i - 1]) + earned;
        const int inRun = i == 0 ? NO_SCORE : ending_[i - 1] + RUN;
        ending_[i] = std::max(apart, inRun);
        best_[i] = std::max(ending_[i], passed);
        if (steps != nullptr && ending_[i] >= passed)
            (*steps)[firstStep + i] = isMatched;
        if (steps != nullptr && inRun >= apart)
            (*steps)[firstStep + i] = static_cast<Step>((*steps)[firstStep + i] | continuesRun);
    }
}

int State::score() const
{
    return std::max(best_.back(), LOWEST);
}

namespace {

bool isScored(std::string_view query, std::string_view text)
{
    return !query.empty() && text.size() <= scoring::MAX_LENGTH && query.size() <= text.size();
}

State passText(std::string_view query, std::string_view text, std::vector<State::Step> *steps)
{
    State state(query.size());
    std::size_t begin = 0;
    for (std::size_t slash = text.find('/'); slash != std::string_view::npos;
         slash = text.find('/', begin)) {
        state.passParent(query, text.substr(begin, slash - begin), steps);
        begin = slash + 1;
    }
    state.passOwnName(query, text.substr(begin), steps);
    return state;
}

} // namespace

} // namespace namesfirst

double namesFirstScore(std::string_view query, std::string_view text)
{
    using namespace namesfirst;
    if (!isScored(query, text))
        return scoring::SCORE_MIN;
    return static_cast<double>(passText(query, text, nullptr).score()) / HUNDREDTHS;
}

std::vector<std::size_t> namesFirstMatch(std::string_view query, std::string_view text)
{
    using namespace namesfirst;
    const std::size_t n = query.size();
    if (!isScored(query, text) || !isSubsequence(query, text))
        return {};
    std::vector<State::Step> steps;
    passText(query, text, &steps);

    std::vector<std::size_t> places(n);
    std::size_t j = text.size();
    bool isInRun = false;
    for (std::size_t i = n; i-- > 0;) {
        // In a run the byte before is the nearest one; otherwise the last that the best way takes.
        const auto isTaken = [&] {
            return isInRun ? lower(text[j]) == lower(query[i])
                           : (steps[j * n + i] & State::isMatched) != 0;
        };
        do
            --j;
        while (!isTaken());
        places[i] = j;
        isInRun = (steps[j * n + i] & State::continuesRun) != 0;
    }
    return places;
}

} // namespace quillon
