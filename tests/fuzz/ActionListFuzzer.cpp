// Reads any bytes as a list of actions. What is read is written so that the same is read again.

#include "actions/ActionListJson.h"
#include "base/Require.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace quillon;
    const auto actions = decodeActions({reinterpret_cast<const char *>(data), size});
    if (!actions)
        return 0;
    require(decodeActions(encodeActions(*actions)) == actions, "a list is read as it was written");
    for (const ActionModel &action : *actions)
        require(!action.description().empty(), "every action is described");
    return 0;
}
