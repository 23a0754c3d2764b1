#include "Platform/linux/DBusApplicationObject.h"

#include <QMetaObject>

#include <utility>

namespace orvesa {

DBusApplicationObject::DBusApplicationObject(SingleInstancePort::Handlers handlers) : m_handlers(std::move(handlers)) {}

void DBusApplicationObject::Activate(const QVariantMap &platformData)
{
    Q_UNUSED(platformData)
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_handlers.activate) {
                m_handlers.activate();
            }
        },
        Qt::QueuedConnection);
}

void DBusApplicationObject::Open(const QStringList &addresses, const QVariantMap &platformData)
{
    // The program opens no files; being asked to still means that the user wants to see it.
    Q_UNUSED(addresses)
    Activate(platformData);
}

void DBusApplicationObject::ActivateAction(const QString &action, const QVariantList &parameters,
                                           const QVariantMap &platformData)
{
    Q_UNUSED(parameters)
    Q_UNUSED(platformData)
    QMetaObject::invokeMethod(
        this,
        [this, action] {
            if (m_handlers.perform) {
                m_handlers.perform(action);
            }
        },
        Qt::QueuedConnection);
}

} // namespace orvesa
