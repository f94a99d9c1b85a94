#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillon {

/// A value in an event or in its result: nothing, a text of any bytes, or a list of such values.
class AppleEventDescriptor
{
public:
    AppleEventDescriptor() = default;
    explicit AppleEventDescriptor(std::string text) : value_(std::move(text)) {}
    static AppleEventDescriptor list();

    /// Returns nothing when this is not a text.
    std::optional<std::string> stringValue() const;
    /// Moves the value out as a list: a list as it is, a text as the only item of a list. Returns
    /// nothing when there is no value.
    std::optional<AppleEventDescriptor> coerceToList() &&;

    // The functions below are for a list, whose places count from 1.

    /// Inserts the descriptor at a place of the list or just after its end; place 0 appends it.
    void insert(AppleEventDescriptor descriptor, std::size_t place);
    /// Returns 0 when this is not a list.
    std::size_t numberOfItems() const;
    /// Returns the item at an existing place.
    const AppleEventDescriptor &at(std::size_t place) const;

    friend bool operator==(const AppleEventDescriptor &a, const AppleEventDescriptor &b) = default;

private:
    using Items = std::vector<AppleEventDescriptor>;
    std::variant<std::monostate, std::string, Items> value_;
};

/// A message to a script, which it does not name.
struct AppleEvent
{
    // Classes, ids and keywords are four characters each.

    /// The class of the events that scripts take.
    static constexpr std::string_view SCRIPTING_CLASS = "ascr";
    /// The event of that class that calls a handler. Its name and its list of arguments are the
    /// parameters below.
    static constexpr std::string_view SUBROUTINE_ID = "psbr";
    static constexpr std::string_view SUBROUTINE_NAME = "snam";
    static constexpr std::string_view DIRECT_OBJECT = "----";
    /// The value for which a return id is generated.
    static constexpr int AUTO_GENERATE_RETURN_ID = -1;
    static constexpr int ANY_TRANSACTION_ID = 0;

    std::string eventClass;
    std::string eventId;
    int returnId = AUTO_GENERATE_RETURN_ID;
    int transactionId = ANY_TRANSACTION_ID;
    /// The parameters by their keywords.
    std::map<std::string, AppleEventDescriptor, std::less<>> parameters = {};

    /// Returns null when the event has no such parameter.
    const AppleEventDescriptor *parameter(std::string_view keyword) const;
};

} // namespace quillon
