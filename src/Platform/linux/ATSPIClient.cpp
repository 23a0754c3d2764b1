#include "Platform/linux/ATSPIClient.h"

#include "Platform/linux/ATSPIBus.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <algorithm>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

QString accessible()
{
    return u"Accessible"_s;
}

/// The list inside an answer's one argument; empty when it is of another shape.
template <typename Item>
QList<Item> listIn(const std::optional<QVariantList> &answer, const QString &signature)
{
    QList<Item> items;
    if (!answer || answer->isEmpty() || !answer->constFirst().canConvert<QDBusArgument>()) {
        return items;
    }
    const auto argument = answer->constFirst().value<QDBusArgument>();
    if (argument.currentSignature() == signature) {
        argument >> items;
    }
    return items;
}

} // namespace

const QDBusArgument &operator>>(const QDBusArgument &argument, ATSPIReference &reference)
{
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> reference.busName >> path;
    argument.endStructure();
    reference.path = path.path();
    return argument;
}

ATSPIStateSet::ATSPIStateSet(const QList<quint32> &words)
{
    constexpr int wordBits = 32;
    if (!words.isEmpty()) {
        m_bits = words.at(0);
    }
    if (words.size() > 1) {
        m_bits |= quint64{words.at(1)} << wordBits;
    }
}

bool ATSPIStateSet::has(ATSPIState state) const
{
    return ((m_bits >> static_cast<int>(state)) & 1U) != 0;
}

ATSPIClient::ATSPIClient(QDBusConnection bus, std::chrono::milliseconds bound) : m_bus(std::move(bus)), m_left(bound) {}

bool ATSPIClient::mayAsk(const QString &busName) const
{
    return m_left > std::chrono::milliseconds(1) && !m_silent.contains(busName);
}

std::optional<QVariantList> ATSPIClient::call(const ATSPIReference &object, const QString &interface,
                                              const QString &method, const QVariantList &arguments)
{
    return send(Call{object, "org.a11y.atspi."_L1 + interface, method, arguments});
}

std::vector<std::optional<QVariantList>> ATSPIClient::callTogether(const std::vector<Call> &calls)
{
    std::vector<Call> full = calls;
    for (Call &call : full) {
        call.interface.prepend("org.a11y.atspi."_L1);
    }
    return send(full);
}

std::optional<QVariantList> ATSPIClient::send(const Call &call)
{
    return send(std::vector{call}).front();
}

std::vector<std::optional<QVariantList>> ATSPIClient::send(const std::vector<Call> &calls)
{
    using namespace std::chrono;
    const auto bound = std::min(ATSPIBus::callBound, duration_cast<milliseconds>(m_left));
    const auto start = steady_clock::now();
    std::vector<std::optional<QDBusPendingCall>> pending;
    for (const Call &call : calls) {
        if (!mayAsk(call.object.busName)) {
            pending.emplace_back();
            continue;
        }
        QDBusMessage message =
            QDBusMessage::createMethodCall(call.object.busName, call.object.path, call.interface, call.method);
        message.setArguments(call.arguments);
        message.setAutoStartService(false);
        ++m_calls;
        pending.emplace_back(m_bus.asyncCall(message, static_cast<int>(bound.count())));
    }
    std::vector<std::optional<QVariantList>> answers;
    for (std::size_t index = 0; index < calls.size(); ++index) {
        answers.push_back(pending[index] ? answerTo(*pending[index], calls[index].object.busName) : std::nullopt);
    }
    m_left -= steady_clock::now() - start;
    return answers;
}

std::optional<QVariantList> ATSPIClient::answerTo(const QDBusPendingCall &pending, const QString &busName)
{
    QDBusPendingCall call = pending;
    call.waitForFinished(); // the time-out that it was sent with ends it
    const QDBusMessage answer = call.reply();
    if (answer.type() == QDBusMessage::ReplyMessage) {
        return answer.arguments();
    }
    const QString error = answer.errorName();
    if (error == "org.freedesktop.DBus.Error.NoReply"_L1 || error == "org.freedesktop.DBus.Error.Timeout"_L1 ||
        error == "org.freedesktop.DBus.Error.TimedOut"_L1) {
        m_silent.insert(busName);
    }
    return std::nullopt;
}

ATSPIClient::Call ATSPIClient::propertyCall(const ATSPIReference &object, const QString &interface, const QString &name)
{
    return {object, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {"org.a11y.atspi."_L1 + interface, name}};
}

std::vector<ATSPIReference> ATSPIClient::referencesIn(const std::optional<QVariantList> &answer)
{
    const auto list = listIn<ATSPIReference>(answer, u"a(so)"_s);
    return {list.begin(), list.end()};
}

std::optional<QVariant> ATSPIClient::property(const ATSPIReference &object, const QString &interface,
                                              const QString &name)
{
    const auto answer = send(propertyCall(object, interface, name));
    if (!answer || answer->isEmpty()) {
        return std::nullopt;
    }
    return answer->constFirst().value<QDBusVariant>().variant();
}

std::vector<ATSPIReference> ATSPIClient::children(const ATSPIReference &object)
{
    return referencesIn(call(object, accessible(), u"GetChildren"_s));
}

std::optional<ATSPIStateSet> ATSPIClient::knownStates(const ATSPIReference &object)
{
    const auto words = listIn<quint32>(call(object, accessible(), u"GetState"_s), u"au"_s);
    return words.isEmpty() ? std::nullopt : std::optional(ATSPIStateSet(words));
}

ATSPIStateSet ATSPIClient::states(const ATSPIReference &object)
{
    return states(std::vector{object}).front();
}

std::vector<ATSPIStateSet> ATSPIClient::states(const std::vector<ATSPIReference> &objects)
{
    std::vector<Call> calls;
    calls.reserve(objects.size());
    for (const ATSPIReference &object : objects) {
        calls.push_back({object, accessible(), u"GetState"_s, {}});
    }
    std::vector<ATSPIStateSet> result;
    for (const auto &answer : callTogether(calls)) {
        result.push_back(statesIn(answer));
    }
    return result;
}

ATSPIStateSet ATSPIClient::statesIn(const std::optional<QVariantList> &answer)
{
    return ATSPIStateSet(listIn<quint32>(answer, u"au"_s));
}

std::optional<quint32> ATSPIClient::role(const ATSPIReference &object)
{
    const auto answer = call(object, accessible(), u"GetRole"_s);
    return answer && !answer->isEmpty() ? std::optional(answer->constFirst().toUInt()) : std::nullopt;
}

bool ATSPIClient::hasText(const ATSPIReference &object)
{
    const auto answer = call(object, accessible(), u"GetInterfaces"_s);
    return answer && answer->value(0).toStringList().contains("org.a11y.atspi.Text"_L1);
}

std::optional<qint64> ATSPIClient::processIdentifier(const QString &busName)
{
    return processIdentifiers({busName}).front();
}

std::vector<std::optional<qint64>> ATSPIClient::processIdentifiers(const std::vector<QString> &busNames)
{
    std::vector<Call> calls;
    calls.reserve(busNames.size());
    for (const QString &busName : busNames) {
        calls.push_back({{u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s},
                         u"org.freedesktop.DBus"_s,
                         u"GetConnectionUnixProcessID"_s,
                         {busName}});
    }
    std::vector<std::optional<qint64>> result;
    for (const auto &answer : send(calls)) {
        result.push_back(answer && !answer->isEmpty() ? std::optional<qint64>(answer->constFirst().toUInt())
                                                      : std::nullopt);
    }
    return result;
}

} // namespace orvesa
