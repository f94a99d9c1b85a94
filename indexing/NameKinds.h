#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace quillon {

/// Returns true for a name that begins with a dot.
inline bool isHiddenName(std::string_view name)
{
    return name.starts_with('.');
}

/// Returns true for the name of a folder that the user sees as one thing, such as an application, a
/// project or a photo library. Such a folder is not entered. Only the extension decides.
bool isPackageName(std::string_view name);

/// A set of file-name extensions that is fast to query. The extension is what follows the last dot
/// of a name, compared byte by byte; a name without a dot has none.
class ExtensionSet
{
public:
    ExtensionSet() = default;
    explicit ExtensionSet(const std::set<std::string> &extensions);

    bool isEmpty() const { return extensions_.empty(); }
    bool holdsExtensionOf(std::string_view name) const;

private:
    std::set<std::string, std::less<>> extensions_;
    /// Bit n is set when an extension of n bytes is in the set. Bit 63 stands for all longer ones
    /// too. Most names are decided here.
    std::uint64_t lengths_ = 0;
};

} // namespace quillon
