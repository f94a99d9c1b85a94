#pragma once

#include <random>
#include <string>
#include <string_view>

namespace quillon {

/// Makes texts that look like paths, with everything that a disk or a list may hold: slashes side
/// by side and at the end, separators, capitals, bytes that are not UTF-8. The same seed gives the
/// same texts.
class RandomTexts
{
public:
    explicit RandomTexts(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t n)
    {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(random_);
    }
    std::string text()
    {
        std::string text = below(4) == 0 ? "" : "/";
        for (std::size_t left = 1 + below(6); left > 0; --left)
            text += name() + (left > 1 || below(12) == 0 ? "/" : "");
        if (below(60) == 0)
            text += "/" + std::string(1000 + below(60), 'a') + name();
        return text;
    }
    std::string query()
    {
        std::string query;
        for (std::size_t left = 1 + below(5); left > 0; --left)
            query += BYTES[below(BYTES.size())];
        return query;
    }
    std::string name()
    {
        std::string name;
        for (std::size_t left = below(10) == 0 ? 0 : 1 + below(7); left > 0; --left) {
            char byte = BYTES[below(BYTES.size())];
            name += byte == '/' ? '.' : byte;
        }
        return name;
    }

private:
    /// There are few letters, so that most queries match many texts.
    static constexpr std::string_view BYTES = "aaabbcdAB-_. 1/\xc3\xa4\xff";
    std::mt19937 random_;
};

} // namespace quillon
