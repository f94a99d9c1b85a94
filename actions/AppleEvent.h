#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillon {

/// A value that an event carries or that comes back for it: nothing, a text of any bytes, or a list
/// of such values.
class AppleEventDescriptor
{
public:
    AppleEventDescriptor() = default;
    explicit AppleEventDescriptor(std::string text) : value_(std::move(text)) {}
    static AppleEventDescriptor list();

    /// Absent when this is no text.
    std::optional<std::string> stringValue() const;
    /// A list as it is, a text as the only item of one; absent for nothing. Moved out of this.
    std::optional<AppleEventDescriptor> coerceToList() &&;

    // These are for a list, whose places count from 1.

    /// At place 0 the descriptor is appended. The place is one of the list, or the one after it.
    void insert(AppleEventDescriptor descriptor, std::size_t place);
    /// 0 when this is no list.
    std::size_t numberOfItems() const;
    /// The place is one of the list.
    const AppleEventDescriptor &at(std::size_t place) const;

    friend bool operator==(const AppleEventDescriptor &a, const AppleEventDescriptor &b) = default;

private:
    using Items = std::vector<AppleEventDescriptor>;
    std::variant<std::monostate, std::string, Items> value_;
};

/// A message to a script; it names no target.
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
    /// Generate one.
    static constexpr int AUTO_GENERATE_RETURN_ID = -1;
    static constexpr int ANY_TRANSACTION_ID = 0;

    std::string eventClass;
    std::string eventId;
    int returnId = AUTO_GENERATE_RETURN_ID;
    int transactionId = ANY_TRANSACTION_ID;
    /// By their keywords.
    std::map<std::string, AppleEventDescriptor, std::less<>> parameters = {};

    /// Null when the event has no such parameter.
    const AppleEventDescriptor *parameter(std::string_view keyword) const;
};

} // namespace quillon
