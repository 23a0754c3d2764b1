#pragma once

// The exported object of the freedesktop application interface; hands what arrives to the handlers. Main thread.
//
// The handlers run from the event loop, after the caller's answer has gone out.

#include "Platform/SingleInstancePort.h"

#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace orvesa {

class DBusApplicationObject final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit DBusApplicationObject(SingleInstancePort::Handlers handlers);

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface's methods on the bus
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &addresses, const QVariantMap &platformData);
    void ActivateAction(const QString &action, const QVariantList &parameters, const QVariantMap &platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    SingleInstancePort::Handlers m_handlers;
};

} // namespace orvesa
