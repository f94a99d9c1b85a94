#pragma once

#include "platform/ApplicationLauncher.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// The kinds of name by which an application is found.
enum class NameKinds
{
    /// The application's id, its names and the name of its program.
    own,
    /// The names above and the kind of program, such as "Web Browser".
    ownAndGeneric,
};

/// Returns the application of that name, regardless of case; null when there is none. A matching id
/// comes before a matching name, and a name before a program. Applications that the desktop's menus
/// show come before those that they leave out. Among equals the first one is taken.
const Application *findApplication(std::string_view name, std::span<const Application> applications,
                                   NameKinds kinds = NameKinds::ownAndGeneric);
/// Returns at most three names of applications in the menus that the user may have meant, the
/// nearest first. Often there are none.
std::vector<std::string> nearestNames(std::string_view name,
                                      std::span<const Application> applications);

} // namespace quillon
