#include "Platform/linux/ATSPIBus.h"

#include "Platform/linux/ATSPIClient.h"
#include "Platform/linux/SessionBus.h"

#include <QDBusMessage>
#include <QDBusReply>

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

ATSPIBus::ATSPIBus(X11Connection &x11) : m_x11(x11) {}

ATSPIBus::~ATSPIBus()
{
    disconnect();
}

std::optional<QDBusConnection> ATSPIBus::connection()
{
    if (!m_connectionName.isEmpty()) {
        QDBusConnection known(m_connectionName);
        if (known.isConnected()) {
            return known;
        }
        disconnect();
    }
    const QString busAddress = address();
    if (busAddress.isEmpty()) {
        return std::nullopt;
    }
    static quint64 count = 0; // two bundles in one process must not share a name
    m_connectionName = u"orvesa-accessibility-%1"_s.arg(++count);
    QDBusConnection made = QDBusConnection::connectToBus(busAddress, m_connectionName);
    if (!made.isConnected()) {
        disconnect();
        return std::nullopt;
    }
    return made;
}

std::shared_ptr<ATSPIClient> ATSPIBus::newClient()
{
    m_client.reset();
    return client();
}

std::shared_ptr<ATSPIClient> ATSPIBus::client()
{
    auto known = connection();
    if (!known) {
        m_client.reset();
    } else if (!m_client || m_sinceFirst.hasExpired(captureLife.count())) {
        m_client = std::make_shared<ATSPIClient>(*std::move(known));
        m_sinceFirst.start();
    }
    return m_client;
}

QString ATSPIBus::address() const
{
    if (auto session = SessionBus::connection()) {
        const auto question =
            QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s);
        const QDBusReply<QString> answer = session->call(question, QDBus::Block, static_cast<int>(callBound.count()));
        if (answer.isValid() && !answer.value().isEmpty()) {
            return answer.value();
        }
    }
    return QString::fromUtf8(m_x11.textProperty(m_x11.root(), "AT_SPI_BUS"));
}

void ATSPIBus::disconnect()
{
    m_client.reset();
    if (!m_connectionName.isEmpty()) {
        QDBusConnection::disconnectFromBus(m_connectionName);
        m_connectionName.clear();
    }
}

} // namespace orvesa
