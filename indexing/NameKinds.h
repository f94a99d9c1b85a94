#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace quillon {

/// A name that begins with a dot.
inline bool isHiddenName(std::string_view name)
{
    return name.starts_with('.');
}

/// A folder of this name is one thing to the user and not entered: an application, a project, a
/// photo library. Told by its extension alone.
bool isPackageName(std::string_view name);

/// A set of file-name extensions, quick to ask. The extension is what follows the last dot of a
/// name, compared byte by byte; a name without a dot has none.
class ExtensionSet
{
public:
    ExtensionSet() = default;
    explicit ExtensionSet(const std::set<std::string> &extensions);

    bool isEmpty() const { return extensions_.empty(); }
    bool holdsExtensionOf(std::string_view name) const;

private:
    std::set<std::string, std::less<>> extensions_;
    /// Bit n: an extension of n bytes is in the set, 63 standing for all longer ones too. Most
    /// names end here.
    std::uint64_t lengths_ = 0;
};

} // namespace quillon
