#include "Platform/macos/StatusBarTray.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <utility>

namespace orvesa {

void StatusBarTray::whenAvailable(std::function<void()> handler)
{
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(handler), Qt::QueuedConnection);
}

} // namespace orvesa
