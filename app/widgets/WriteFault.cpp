#include "app/widgets/WriteFault.h"

#include <QCoreApplication>

namespace quillon {

QString writeFault()
{
    return QCoreApplication::translate("WriteFault", "The settings could not be written.");
}

} // namespace quillon
