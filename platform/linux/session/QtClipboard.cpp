#include "platform/linux/session/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

namespace quillon {

void QtClipboard::setString(const std::string &text)
{
    // The text is set as bytes, since the toolkit's own text would lose those that are not UTF-8.
    auto data = std::make_unique<QMimeData>();
    data->setData(QStringLiteral("text/plain"), QByteArray::fromStdString(text));
    QGuiApplication::clipboard()->setMimeData(data.release());
}

} // namespace quillon
