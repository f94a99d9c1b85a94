#pragma once

#include "platform/linux/watching/FolderVerifier.h"

#include <functional>

namespace quillon {

/// Gives the watches that the budget allows to the folders nearest to the roots.
///
/// drain reads and notes all events up to now: what was reported of a folder that loses its watch
/// must not be lost with it.
void fitWatchesToBudget(WatchedFolders &folders, FolderVerifier &verifier,
                        const std::function<void()> &drain);

} // namespace quillon
