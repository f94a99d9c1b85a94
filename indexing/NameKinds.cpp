#include "indexing/NameKinds.h"

#include <algorithm>

namespace quillon {

namespace {

std::uint64_t lengthBit(std::size_t length)
{
    return std::uint64_t{1} << std::min<std::size_t>(length, 63);
}

} // namespace

ExtensionSet::ExtensionSet(const std::set<std::string> &extensions)
    : extensions_(extensions.begin(), extensions.end())
{
    for (const std::string &extension : extensions_)
        lengths_ |= lengthBit(extension.size());
}

bool ExtensionSet::holdsExtensionOf(std::string_view name) const
{
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos)
        return false;
    const std::string_view extension = name.substr(dot + 1);
    return (lengths_ & lengthBit(extension.size())) != 0 && extensions_.contains(extension);
}

bool isPackageName(std::string_view name)
{
    static const ExtensionSet PACKAGES({
        "app",
        "appex",
        "framework",
        "fcpbundle",
        "kext",
        "logicx",
        "musiclibrary",
        "photoslibrary",
        "prefPane",
        "qlgenerator",
        "rtfd",
        "tvlibrary",
        "xcassets",
        "xcframework",
        "xcodeproj",
        "xcworkspace",
        "xctest",
        "xpc",
    });
    return PACKAGES.holdsExtensionOf(name);
}

} // namespace quillon
