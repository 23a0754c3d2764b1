#pragma once

// An element of another program on a private bus, and the adapter that asks it. The element answers in a thread of its
// own, since whoever asks waits in this one.

#include "Platform/AdoptedDesktop.h"
#include "Platform/linux/ATSPIBus.h"
#include "Platform/linux/ATSPIClient.h"
#include "Platform/linux/ATSPIElements.h"
#include "Platform/linux/X11Workspace.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QString>
#include <QThread>

#include <memory>

namespace orvesa::tests {

template <typename Element>
class ElementOnBusTest : public ::testing::Test {
protected:
    /// Puts the element on the bus under the path.
    using Registration = bool (*)(QDBusConnection &bus, const QString &path, Element &element);

    explicit ElementOnBusTest(Registration registration)
    {
        const QString address = m_desktop->environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        QDBusConnection theirs = QDBusConnection::connectToBus(address, m_theirs);
        m_onBus.moveToThread(&m_thread);
        m_thread.start();
        EXPECT_TRUE(registration(theirs, m_reference.path, m_onBus));
        m_reference.busName = theirs.baseService();
        m_client = std::make_shared<ATSPIClient>(QDBusConnection::connectToBus(address, m_ours));
    }
    ~ElementOnBusTest() override
    {
        QDBusConnection::disconnectFromBus(m_theirs);
        QDBusConnection::disconnectFromBus(m_ours);
        m_thread.quit();
        m_thread.wait();
    }

public:
    Q_DISABLE_COPY_MOVE(ElementOnBusTest)

protected:
    const QString m_theirs = QStringLiteral("orvesa-test-element");
    const QString m_ours = QStringLiteral("orvesa-test-asker");
    AdoptedDesktop m_desktop{sessionOnly()};
    X11Connection m_connection;
    X11Workspace m_workspace{m_connection};
    ATSPIBus m_bus{m_connection};
    ATSPIElements m_elements{m_bus, m_workspace};
    QThread m_thread;
    Element m_onBus;
    ATSPIReference m_reference{{}, QStringLiteral("/element")};
    std::shared_ptr<ATSPIClient> m_client;
};

} // namespace orvesa::tests
