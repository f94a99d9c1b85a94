#pragma once

#include "platform/ApplicationLauncher.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// Which kind of name counts as an application's own.
enum class NameKinds
{
    /// Its id, its names and the name of its program.
    own,
    /// What kind of program it is as well: "Web Browser".
    ownAndGeneric,
};

/// The application of that name, whatever the case of its letters; null when there is none. The id
/// goes before the name, that before the program, and so on; what the desktop's menus show goes
/// before what they leave out. Among equals the first one.
const Application *findApplication(std::string_view name, std::span<const Application> applications,
                                   NameKinds kinds = NameKinds::ownAndGeneric);
/// Names of applications in the menus that somebody who typed this may have meant, the nearest
/// first, three at most; often none.
std::vector<std::string> nearestNames(std::string_view name,
                                      std::span<const Application> applications);

} // namespace quillon
