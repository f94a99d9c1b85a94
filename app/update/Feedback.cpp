#include "app/update/Feedback.h"

#include "app/update/UpdateNotices.h"
#include "platform/Workspace.h"

#include <QCoreApplication>

#include <utility>

namespace quillon {

Feedback::Feedback(const Services &services, std::string address)
    : services_(services),
      address_(std::move(address)),
      window_(QCoreApplication::translate("Feedback", "Quillon – Feedback"), services.windowSystem)
{}

void Feedback::open()
{
    if (!services_.workspace.openLink(address_))
        window_.present(UpdateNotices::noBrowser(address_));
}

} // namespace quillon
