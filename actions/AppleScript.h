#pragma once

#include "actions/AppleEvent.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace quillon {

/// A script that declares one handler, which is bound to the native operation of that name. Nothing
/// interprets the text: its first line names the operation, and the other lines describe it.
class AppleScript
{
public:
    /// Takes an event whose direct object is the complete list of arguments. Returns nothing on
    /// failure.
    using Operation = std::function<std::optional<AppleEventDescriptor>(const AppleEvent &event)>;
    /// The operations by the names of their handlers.
    using Operations = std::map<std::string, Operation, std::less<>>;

    /// Compiles the text. A text that declares no handler, or a handler without an operation, does
    /// not compile, and every event for it fails.
    AppleScript(std::string source, const Operations &operations);

    const std::string &source() const { return source_; }
    bool isCompiled() const { return operation_ != nullptr; }

    /// Runs the handler on the calling thread. Returns nothing when the handler fails, when the
    /// event names another handler, or when it brings fewer arguments than the handler declares.
    std::optional<AppleEventDescriptor> executeAppleEvent(const AppleEvent &event) const;

private:
    std::string source_;
    std::string handler_;
    std::size_t parameterCount_ = 0;
    Operation operation_;
};

} // namespace quillon
