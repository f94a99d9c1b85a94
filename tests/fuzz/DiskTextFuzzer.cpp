// Reads any bytes as what the kernel says of the disk: as records of a directory, and as the table
// of mounts.

#include "base/Require.h"
#include "platform/linux/disk/DirectoryRecords.h"
#include "platform/linux/disk/MountPoints.h"

#include <cstdint>
#include <cstdio>
#include <memory>

namespace {

using namespace quillon;

void checkRecords(std::span<const std::byte> bytes)
{
    // A buffer of just this size shows the address sanitizer every byte that is read too far.
    const auto records = std::make_unique<std::byte[]>(bytes.size());
    std::ranges::copy(bytes, records.get());
    std::vector<FolderEntry> entries;
    readDirectoryRecords({records.get(), bytes.size()}, -1, entries);
    const char *const begin = reinterpret_cast<const char *>(records.get());
    for (const FolderEntry &entry : entries) {
        require(!entry.name.empty() && entry.name != "." && entry.name != "..", "names are names");
        require(entry.name.find('\0') == std::string_view::npos, "a name ends before a null");
        require(entry.name.data() >= begin &&
                    entry.name.data() + entry.name.size() <= begin + bytes.size(),
                "a name points into the records");
    }
}

void checkMounts(const std::string &table)
{
    const std::vector<Mount> mounts = parseMounts(table);
    std::string again;
    for (const Mount &mount : mounts) {
        require(mount.point.starts_with('/'), "a mount point is absolute");
        std::string escaped;
        for (const char byte : mount.point) {
            char octal[5];
            std::snprintf(octal, sizeof octal, "\\%03o", static_cast<unsigned char>(byte));
            escaped += octal;
        }
        // A table has a plain slash at the beginning of each place.
        again += "1 2 3:4 / /" + escaped.substr(4) + " rw shared:1 - " +
                 (mount.type.empty() ? "" : mount.type + " ") + "\n";
    }
    const std::vector<Mount> same = parseMounts(again);
    require(same.size() == mounts.size(), "no mount is lost");
    for (std::size_t i = 0; i < mounts.size(); ++i)
        require(same[i].point == mounts[i].point && same[i].type == mounts[i].type,
                "a mount is read as it was written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    checkRecords(std::as_bytes(std::span(data, size)));
    checkMounts({reinterpret_cast<const char *>(data), size});
    return 0;
}
