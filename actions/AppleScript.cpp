#include "actions/AppleScript.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

struct Declaration
{
    std::string_view handler;
    std::size_t parameterCount = 0;
};

/// Reads "on NAME(PARAMETER, ...)".
std::optional<Declaration> declarationIn(std::string_view source)
{
    constexpr std::string_view ON = "on ";
    const std::string_view line = source.substr(0, source.find('\n'));
    const std::size_t open = line.find('(');
    if (!line.starts_with(ON) || open == std::string_view::npos || !line.ends_with(')'))
        return std::nullopt;
    const std::string_view parameters = line.substr(open + 1, line.size() - open - 2);
    const auto commas = static_cast<std::size_t>(std::ranges::count(parameters, ','));
    return Declaration{.handler = line.substr(ON.size(), open - ON.size()),
                       .parameterCount = parameters.empty() ? 0 : commas + 1};
}

} // namespace

AppleScript::AppleScript(std::string source, const Operations &operations)
    : source_(std::move(source))
{
    const auto declaration = declarationIn(source_);
    if (!declaration)
        return;
    const auto found = operations.find(declaration->handler);
    if (found == operations.end())
        return;
    handler_ = declaration->handler;
    parameterCount_ = declaration->parameterCount;
    operation_ = found->second;
}

std::optional<AppleEventDescriptor> AppleScript::executeAppleEvent(const AppleEvent &event) const
{
    if (!isCompiled() || event.eventClass != AppleEvent::SCRIPTING_CLASS ||
        event.eventId != AppleEvent::SUBROUTINE_ID)
        return std::nullopt;
    const AppleEventDescriptor *name = event.parameter(AppleEvent::SUBROUTINE_NAME);
    const AppleEventDescriptor *arguments = event.parameter(AppleEvent::DIRECT_OBJECT);
    if (name == nullptr || name->stringValue() != handler_ || arguments == nullptr ||
        arguments->numberOfItems() < parameterCount_)
        return std::nullopt;
    return operation_(event);
}

} // namespace quillon
