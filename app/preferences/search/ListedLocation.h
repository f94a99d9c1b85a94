#pragma once

#include "app/widgets/FormTable.h"
#include "indexing/SearchBaseLocation.h"

#include <memory>
#include <optional>
#include <vector>

namespace quillon {

class SearchBaseFinder;
struct SearchLocations;

/// A search location as a row of the list.
struct ListedLocation
{
    /// Says whether an include folder is there. Patterns and extensions always are.
    enum class Presence
    {
        there,
        away,
        unreadable,
    };

    std::shared_ptr<const SearchBaseLocation> location;
    Presence presence = Presence::there;
    /// Says of an include folder whether hidden folders below it are searched.
    std::optional<bool> searchesHidden = std::nullopt;

    /// Returns the text of the row, which is quiet for a location where nothing is searched at the
    /// moment.
    QList<FormTextRun> label() const;
    /// Returns whether both name the same rule, even if they were read at different times.
    bool names(const SearchBaseLocation &other) const;
};

/// Returns all locations in the order of the list: folders ascending, whether or not they are
/// there, then extensions, then patterns. The finder only provides the user's patterns. No disk is
/// asked.
std::vector<ListedLocation> listed(const SearchLocations &locations,
                                   const SearchBaseFinder &finder);

} // namespace quillon
