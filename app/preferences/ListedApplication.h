#pragma once

#include "platform/ApplicationLauncher.h"

#include <QString>

#include <vector>

namespace quillon {

/// An application as menus offer it.
struct ListedApplication
{
    Application application;
    /// The list shows its name, with its program behind it where another one has the same name.
    QString title;
    /// "Open Application" finds this one by its name, or by its id where others have that name.
    QString target;
};

/// Returns the applications that the desktop's menus show, in the order of their titles.
std::vector<ListedApplication> listedApplications(const std::vector<Application> &installed);

} // namespace quillon
