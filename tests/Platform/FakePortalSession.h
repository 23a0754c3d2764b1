#pragma once

// A session of the fake portal: says on standard output when it is closed. Main thread.

#include <QObject>

namespace orvesa::tests {

class FakePortalSession final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Session")

public:
    explicit FakePortalSession(QObject *parent);
    ~FakePortalSession() override;

public Q_SLOTS:
    void Close(); // NOLINT(readability-identifier-naming): the method's name on the bus
};

} // namespace orvesa::tests
