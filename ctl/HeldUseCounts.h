#pragma once

#include "matching/RecentAccessScore.h"

#include <optional>
#include <string_view>
#include <utility>
#include <variant>

namespace quillon {

/// Use counts that are held in memory and stored nowhere.
class HeldUseCounts final : public RecentAccessScoreDataStore
{
public:
    explicit HeldUseCounts(DefaultsDictionary counts) : counts_(std::move(counts)) {}

    std::optional<DefaultsDictionary> dictionary(std::string_view) override { return counts_; }
    bool set(const DefaultsValue &value, std::string_view) override
    {
        if (const auto *counts = std::get_if<DefaultsDictionary>(&value.value))
            counts_ = *counts;
        return true;
    }

    /// Returns the counts as the settings hold them.
    const DefaultsDictionary &counts() const { return counts_; }

private:
    DefaultsDictionary counts_;
};

} // namespace quillon
