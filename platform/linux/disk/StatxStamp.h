#pragma once

#include "platform/FolderStamp.h"

#include <cstdint>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace quillon {

/// The fields that stampOf() needs from statx().
constexpr unsigned int STATX_STAMP = STATX_INO | STATX_CTIME;

inline FolderStamp stampOf(const struct statx &status)
{
    constexpr std::int64_t NANOSECONDS = 1'000'000'000;
    return {::makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino,
            status.stx_ctime.tv_sec * NANOSECONDS + status.stx_ctime.tv_nsec};
}

} // namespace quillon
