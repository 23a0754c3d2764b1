#include "Platform/linux/ATSPITrust.h"

#include "Platform/linux/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QDBusVariant>

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr int boundInMilliseconds = 250;

QString service()
{
    return u"org.a11y.Bus"_s;
}

QString path()
{
    return u"/org/a11y/bus"_s;
}

QString statusInterface()
{
    return u"org.a11y.Status"_s;
}

QString propertiesInterface()
{
    return u"org.freedesktop.DBus.Properties"_s;
}

QDBusMessage enabledQuestion()
{
    QDBusMessage message = QDBusMessage::createMethodCall(service(), path(), propertiesInterface(), u"Get"_s);
    message.setArguments({statusInterface(), u"IsEnabled"_s});
    return message;
}

QDBusMessage addressQuestion()
{
    return QDBusMessage::createMethodCall(service(), path(), service(), u"GetAddress"_s);
}

bool isAddress(const QDBusMessage &answer)
{
    return answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().value(0).toString().isEmpty();
}

bool isEnabled(const QDBusMessage &answer)
{
    return answer.type() == QDBusMessage::ReplyMessage &&
           answer.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

} // namespace

ATSPITrust::ATSPITrust(QObject *parent) : QObject(parent)
{
    auto bus = SessionBus::connection();
    if (!bus) {
        m_state = State::untrusted;
        return;
    }
    bus->connect(service(), path(), propertiesInterface(), u"PropertiesChanged"_s, this,
                 SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    bus->connect(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                 u"NameOwnerChanged"_s, {service()}, QString(), this, SLOT(ownerChanged(QString, QString, QString)));
    fetch();
}

ATSPITrust::~ATSPITrust() = default;

bool ATSPITrust::isTrusted() const
{
    if (m_state == State::unknown) {
        fetchNow();
    }
    return m_state == State::trusted;
}

void ATSPITrust::fetch()
{
    auto bus = SessionBus::connection();
    if (!bus) {
        m_state = State::untrusted;
        return;
    }
    const quint64 generation = ++m_generation;
    // The address first: it is what makes the accessibility bus start. Answers of one service come in order.
    auto *const address = new QDBusPendingCallWatcher(bus->asyncCall(addressQuestion()), this);
    connect(address, &QDBusPendingCallWatcher::finished, this, [this, address, generation] {
        if (!isAddress(address->reply()) && generation == m_generation) {
            ++m_generation; // whatever the second answer says
            m_state = State::untrusted;
        }
        address->deleteLater();
    });
    auto *const enabled = new QDBusPendingCallWatcher(bus->asyncCall(enabledQuestion()), this);
    connect(enabled, &QDBusPendingCallWatcher::finished, this, [this, enabled, generation] {
        if (generation == m_generation) {
            m_state = isEnabled(enabled->reply()) ? State::trusted : State::untrusted;
        }
        enabled->deleteLater();
    });
}

void ATSPITrust::fetchNow() const
{
    // The asynchronous answer is still on its way and will settle the state for good; without one in time the answer to
    // this question is no, and the next question asks again.
    auto bus = SessionBus::connection();
    if (!bus) {
        m_state = State::untrusted;
        return;
    }
    const QDBusMessage enabled = bus->call(enabledQuestion(), QDBus::Block, boundInMilliseconds);
    if (enabled.type() == QDBusMessage::ReplyMessage) {
        m_state = isEnabled(enabled) ? State::trusted : State::untrusted;
    }
}

void ATSPITrust::propertiesChanged(const QString &interface, const QVariantMap &changed, const QStringList &invalidated)
{
    if (interface != statusInterface()) {
        return;
    }
    if (const auto enabled = changed.constFind(u"IsEnabled"_s); enabled != changed.constEnd()) {
        ++m_generation;
        m_state = enabled->toBool() ? State::trusted : State::untrusted;
    } else if (invalidated.contains(u"IsEnabled"_s)) {
        fetch();
    }
}

void ATSPITrust::ownerChanged(const QString &name, const QString &oldOwner, const QString &newOwner)
{
    Q_UNUSED(name)
    Q_UNUSED(oldOwner)
    if (newOwner.isEmpty()) {
        // Asking now would start the service again.
        ++m_generation;
        m_state = State::untrusted;
        return;
    }
    fetch();
}

void ATSPITrust::requestTrust()
{
    if (m_presenter) {
        m_presenter();
    }
}

void ATSPITrust::setRequestPresenter(std::function<void()> presenter)
{
    m_presenter = std::move(presenter);
}

void ATSPITrust::enable()
{
    auto bus = SessionBus::connection();
    if (!bus) {
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(service(), path(), propertiesInterface(), u"Set"_s);
    message.setArguments({statusInterface(), u"IsEnabled"_s, QVariant::fromValue(QDBusVariant(true))});
    auto *const answer = new QDBusPendingCallWatcher(bus->asyncCall(message), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        // Not every service announces the change.
        fetch();
        answer->deleteLater();
    });
}

} // namespace orvesa
