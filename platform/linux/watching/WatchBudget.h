#pragma once

#include "platform/linux/watching/FolderVerifier.h"

#include <functional>

namespace quillon {

/// Gives the watches that the budget allows to the folders nearest to the roots. drain reads and
/// notes all events so far, so that what was reported for a folder is not lost together with its
/// watch.
void fitWatchesToBudget(WatchedFolders &folders, FolderVerifier &verifier,
                        const std::function<void()> &drain);

} // namespace quillon
