#include "platform/linux/disk/MountPoints.h"

#include <fstream>
#include <sstream>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

/// Returns whether the text begins with a backslash and the three octal digits of a byte.
bool isEscaped(std::string_view text)
{
    const auto isUpTo = [&](std::size_t at, char last) {
        return text[at] >= '0' && text[at] <= last;
    };
    return text.size() >= 4 && text[0] == '\\' && isUpTo(1, '3') && isUpTo(2, '7') &&
           isUpTo(3, '7');
}

/// Replaces each backslash and three octal digits by the byte. The kernel writes blank, tab, line
/// feed and backslash in this way.
std::string unescaped(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isEscaped(text.substr(i))) {
            plain += static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 +
                                       (text[i + 3] - '0'));
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

} // namespace

std::vector<Mount> parseMounts(const std::string &mountInfo)
{
    std::vector<Mount> mounts;
    std::istringstream lines(mountInfo);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        std::string field;
        // The mount, the parent, the device and the root within the file system come first.
        for (int i = 0; i < 5; ++i)
            fields >> field;
        if (!fields || !field.starts_with('/'))
            continue;
        Mount mount{unescaped(field), {}};
        // Any number of optional fields and a dash come before the type.
        while (fields >> field && field != "-") {
        }
        fields >> mount.type;
        mounts.push_back(std::move(mount));
    }
    return mounts;
}

std::optional<std::vector<Mount>> mounts()
{
    std::ifstream file("/proc/self/mountinfo", std::ios::binary);
    if (!file)
        return std::nullopt;
    std::ostringstream text;
    text << file.rdbuf();
    return parseMounts(text.str());
}

std::optional<std::vector<std::string>> mountPoints()
{
    auto all = mounts();
    if (!all)
        return std::nullopt;
    std::vector<std::string> points;
    for (Mount &mount : *all)
        points.push_back(std::move(mount.point));
    return points;
}

} // namespace quillon
