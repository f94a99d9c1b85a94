#pragma once

#include "platform/FolderPicker.h"
#include "platform/linux/session/DesktopPortal.h"

#include <QPointer>

namespace quillon {

/// Asks for folders through org.freedesktop.portal.FileChooser. No call blocks.
class PortalFolderPicker : public QObject, public FolderPicker
{
    Q_OBJECT

public:
    void pick(const std::string &title, const std::string &folder, std::uintptr_t window,
              Receiver receiver) override;

private:
    void showDialog(const QString &title, const QByteArray &folder, std::uintptr_t window);
    void receive(const std::optional<std::vector<std::string>> &paths);

    QPointer<QObject> question_;
    Receiver receiver_;
};

} // namespace quillon
