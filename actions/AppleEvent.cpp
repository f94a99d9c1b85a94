#include "actions/AppleEvent.h"

#include "base/Require.h"

#include <utility>

namespace quillon {

AppleEventDescriptor AppleEventDescriptor::list()
{
    AppleEventDescriptor descriptor;
    descriptor.value_.emplace<Items>();
    return descriptor;
}

std::optional<std::string> AppleEventDescriptor::stringValue() const
{
    const auto *text = std::get_if<std::string>(&value_);
    return text == nullptr ? std::nullopt : std::optional(*text);
}

std::optional<AppleEventDescriptor> AppleEventDescriptor::coerceToList() &&
{
    if (std::holds_alternative<std::monostate>(value_))
        return std::nullopt;
    if (std::holds_alternative<Items>(value_))
        return std::move(*this);
    AppleEventDescriptor descriptor = list();
    descriptor.insert(std::move(*this), 0);
    return descriptor;
}

void AppleEventDescriptor::insert(AppleEventDescriptor descriptor, std::size_t place)
{
    auto *items = std::get_if<Items>(&value_);
    require(items != nullptr && place <= items->size() + 1, "descriptors go into a list");
    const std::size_t index = place == 0 ? items->size() : place - 1;
    items->insert(items->begin() + static_cast<std::ptrdiff_t>(index), std::move(descriptor));
}

std::size_t AppleEventDescriptor::numberOfItems() const
{
    const auto *items = std::get_if<Items>(&value_);
    return items == nullptr ? 0 : items->size();
}

const AppleEventDescriptor &AppleEventDescriptor::at(std::size_t place) const
{
    require(place >= 1 && place <= numberOfItems(), "the place is one of the list");
    return std::get<Items>(value_)[place - 1];
}

const AppleEventDescriptor *AppleEvent::parameter(std::string_view keyword) const
{
    const auto found = parameters.find(keyword);
    return found == parameters.end() ? nullptr : &found->second;
}

} // namespace quillon
