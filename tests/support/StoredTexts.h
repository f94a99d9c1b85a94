#pragma once

#include "base/DefaultsStore.h"

#include <string>
#include <vector>

namespace quillon {

/// Returns texts as the settings store them.
inline DefaultsValue listOf(const std::vector<std::string> &texts)
{
    DefaultsArray array;
    for (const std::string &text : texts)
        array.push_back({text});
    return {array};
}

} // namespace quillon
