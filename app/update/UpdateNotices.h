#pragma once

#include "app/widgets/NoticeWindow.h"
#include "platform/UpdateController.h"

#include <QCoreApplication>

#include <functional>
#include <string>

namespace quillon {

/// The notices to the user about updates.
class UpdateNotices
{
    Q_DECLARE_TR_FUNCTIONS(UpdateNotices)

public:
    /// Opens an address in the web browser.
    using OpenLink = std::function<void(const std::string &address)>;

    /// Returns the notice that is shown while the answer is awaited.
    static Notice checking(const std::string &runningVersion);
    static Notice update(const UpdateItem &item, const std::string &runningVersion,
                         const OpenLink &openLink);
    static Notice noUpdate(NoUpdate reason, const std::string &runningVersion);
    /// Returns the notice that is shown when no program opens web pages. The place is an address or
    /// a path.
    static Notice noBrowser(const std::string &place);

private:
    static QString failure(NoUpdate reason);
};

} // namespace quillon
