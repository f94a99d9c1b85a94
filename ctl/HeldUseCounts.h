#pragma once

#include "matching/RecentAccessScore.h"

#include <optional>
#include <string_view>
#include <utility>

namespace quillon {

/// Use counts that were given and that nobody changes.
class HeldUseCounts final : public RecentAccessScoreDataStore
{
public:
    explicit HeldUseCounts(DefaultsDictionary counts) : counts_(std::move(counts)) {}

    std::optional<DefaultsDictionary> dictionary(std::string_view) override { return counts_; }
    bool edit(std::string_view, const DefaultsStore::Made &) override { return false; }

private:
    const DefaultsDictionary counts_;
};

} // namespace quillon
