#pragma once

#include "platform/ApplicationLauncher.h"

#include <QString>

#include <vector>

namespace quillon {

/// An application as menus offer it.
struct ListedApplication
{
    Application application;
    /// The application's name in the list, followed by its program if another one has the same
    /// name.
    QString title;
    /// The name by which "Open Application" finds this one, or its id if others have that name.
    QString target;
};

/// Returns the applications that the desktop's menus show, in the order of their titles.
std::vector<ListedApplication> listedApplications(const std::vector<Application> &installed);

} // namespace quillon
