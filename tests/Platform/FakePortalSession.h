#pragma once

// A session of the fake portal: says on standard output when it is closed, and leaves the answer to the portal. Main
// thread.

#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>

namespace orvesa::tests {

class FakePortalSession final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Session")

public:
    explicit FakePortalSession(QObject *parent);
    ~FakePortalSession() override;

public Q_SLOTS:
    void Close(); // NOLINT(readability-identifier-naming): the method's name on the bus

Q_SIGNALS:
    /// The call is still to be answered.
    void closeAsked(const QDBusMessage &call);
};

} // namespace orvesa::tests
