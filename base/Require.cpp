#include "base/Require.h"

#include <cstdio>
#include <cstdlib>

namespace quillon {

void requireFailed(const char *what)
{
    std::fprintf(stderr, "quillon: broken invariant: %s\n", what);
    std::abort();
}

} // namespace quillon
