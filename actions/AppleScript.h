#pragma once

#include "actions/AppleEvent.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace quillon {

/// A script that declares one handler, bound to the native operation of the handler's name. Only
/// the first line of the text decides what is bound; the others tell what the operation does.
class AppleScript
{
public:
    /// Given an event whose direct object is the list of arguments, all of them there. Absent on
    /// failure.
    using Operation = std::function<std::optional<AppleEventDescriptor>(const AppleEvent &event)>;
    /// By the names of the handlers that they stand for.
    using Operations = std::map<std::string, Operation, std::less<>>;

    /// Compiles the text. One that declares no handler, or a handler that no operation stands for,
    /// does not compile: no event is ever executed against it.
    AppleScript(std::string source, const Operations &operations);

    const std::string &source() const { return source_; }
    bool isCompiled() const { return operation_ != nullptr; }

    /// Runs the handler on the calling thread. Absent when it fails, when the event names another
    /// handler, or when it brings fewer arguments than the handler declares.
    std::optional<AppleEventDescriptor> executeAppleEvent(const AppleEvent &event) const;

private:
    std::string source_;
    std::string handler_;
    std::size_t parameterCount_ = 0;
    Operation operation_;
};

} // namespace quillon
