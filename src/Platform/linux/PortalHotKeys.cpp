#include "Platform/linux/PortalHotKeys.h"

#include "Platform/linux/PortalShortcut.h"
#include "Platform/linux/SessionBus.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QMetaObject>

#include <algorithm>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr int boundInMilliseconds = 250;
constexpr const char *bindByHand =
    "Bind \"orvesa-translate --perform translateSelection\" (or polishSelection, ocrTranslate, prompt:NAME) to keys in "
    "the desktop's keyboard settings.";

QString service()
{
    return u"org.freedesktop.portal.Desktop"_s;
}

QString objectPath()
{
    return u"/org/freedesktop/portal/desktop"_s;
}

QString shortcutsInterface()
{
    return u"org.freedesktop.portal.GlobalShortcuts"_s;
}

QString requestInterface()
{
    return u"org.freedesktop.portal.Request"_s;
}

/// Under this name the desktop keeps the keys that the user gave a shortcut. The keys that are wished for belong to it:
/// with others it is another shortcut, and the desktop looks at the wish again.
QString shortcutName(quint32 id, const QString &trigger)
{
    return u"hotkey-%1-%2"_s.arg(id).arg(trigger);
}

/// One desktop shows this name in its settings, and keeps the keys that the user chose there under it, for programs of
/// which it knows nothing else. So it is always the same.
QString sessionToken()
{
    return u"Orvesa_Translate"_s;
}

/// Whether the portal has not started, or has not come to answering, rather than answered that it has no shortcuts.
bool isStillToCome(const QDBusConnection &bus, const QDBusMessage &failure)
{
    const QString error = failure.errorName();
    if (error == QDBusError::errorString(QDBusError::NoReply) ||
        error == QDBusError::errorString(QDBusError::TimedOut)) {
        return true;
    }
    if (error != QDBusError::errorString(QDBusError::ServiceUnknown) &&
        error != "org.freedesktop.DBus.Error.NameHasNoOwner"_L1) {
        return false;
    }
    const QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                                 u"org.freedesktop.DBus"_s, u"ListActivatableNames"_s);
    const QDBusMessage answer = bus.call(question, QDBus::Block, boundInMilliseconds);
    return answer.type() == QDBusMessage::ReplyMessage &&
           answer.arguments().value(0).toStringList().contains(service());
}

QDBusMessage portalCall(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service(), objectPath(), shortcutsInterface(), method);
    message.setArguments(arguments);
    return message;
}

} // namespace

PortalHotKeys::PortalHotKeys() = default;

PortalHotKeys::~PortalHotKeys()
{
    closeSession();
}

bool PortalHotKeys::isOffered()
{
    if (!m_isOffered) {
        m_isOffered = false;
        if (auto bus = SessionBus::connection()) {
            QDBusMessage question =
                QDBusMessage::createMethodCall(service(), objectPath(), u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
            question.setArguments({shortcutsInterface(), u"version"_s});
            question.setAutoStartService(false);
            const QDBusMessage answer = bus->call(question, QDBus::Block, boundInMilliseconds);
            // At login the portal may be still to come, or on its way; what it can do shows when it is asked for it.
            m_isOffered = answer.type() == QDBusMessage::ReplyMessage
                              ? answer.arguments().value(0).value<QDBusVariant>().variant().toUInt() >= 1
                              : isStillToCome(*bus, answer);
            PortalShortcut::registerType();
            bus->connect(service(), objectPath(), shortcutsInterface(), u"Activated"_s, this,
                         SLOT(activated(QDBusMessage)));
        }
        if (!*m_isOffered) {
            qWarning("OrvesaTranslate: this Wayland desktop lets no program have global shortcuts. %s", bindByHand);
        }
    }
    return *m_isOffered;
}

qint32 PortalHotKeys::installHandler(Handler handler)
{
    m_handler = std::move(handler);
    return HotKeyStatus::noErr;
}

void PortalHotKeys::removeHandler()
{
    m_handler = nullptr;
}

HotKeyRegistration PortalHotKeys::registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id)
{
    if (!isOffered()) {
        return {HotKeyStatus::notAvailable, 0};
    }
    const bool isDuplicate = std::ranges::any_of(m_hotKeys, [&](const auto &entry) {
        return entry.second.keyCode == keyCode && entry.second.modifiers == modifiers;
    });
    if (isDuplicate) {
        return {HotKeyStatus::hotKeyExists, 0};
    }
    if (PortalShortcut::trigger(keyCode, modifiers).isEmpty()) {
        return {HotKeyStatus::hotKeyInvalid, 0};
    }
    m_hotKeys.emplace(++m_lastReference, HotKey{keyCode, modifiers, id});
    scheduleBinding();
    return {HotKeyStatus::noErr, m_lastReference};
}

qint32 PortalHotKeys::unregisterHotKey(HotKeyRef reference)
{
    if (m_hotKeys.erase(reference) == 0) {
        return HotKeyStatus::hotKeyInvalid;
    }
    scheduleBinding();
    return HotKeyStatus::noErr;
}

void PortalHotKeys::describe(HotKeyID id, const QString &description)
{
    m_descriptions[id.id] = description;
}

void PortalHotKeys::scheduleBinding()
{
    if (!std::exchange(m_bindingScheduled, true)) {
        QMetaObject::invokeMethod(this, &PortalHotKeys::bind, Qt::QueuedConnection);
    }
}

void PortalHotKeys::bind()
{
    m_bindingScheduled = false;
    std::map<quint32, HotKey> wanted;
    for (const auto &[reference, hotKey] : m_hotKeys) {
        wanted[hotKey.id.id] = hotKey;
    }
    auto bus = SessionBus::connection();
    if (wanted == m_bound || !bus) {
        return;
    }
    closeSession();
    m_bound = std::move(wanted);
    if (m_bound.empty()) {
        return;
    }
    // A session takes one set of shortcuts; another set needs another session. Plasma 5 gives the keys out right here;
    // what others make of it is asked for when there is a session.
    const QString token = expectAnswer(SLOT(sessionAnswered(uint, QVariantMap, QDBusMessage)));
    const QVariantMap options{{u"handle_token"_s, token},
                              {u"session_handle_token"_s, sessionToken()},
                              {u"shortcuts"_s, QVariant::fromValue(wishes())}};
    auto *const creating = new QDBusPendingCallWatcher(bus->asyncCall(portalCall(u"CreateSession"_s, {options})), this);
    connect(creating, &QDBusPendingCallWatcher::finished, this, &PortalHotKeys::sessionCalled);
}

void PortalHotKeys::sessionCalled(QDBusPendingCallWatcher *creating)
{
    creating->deleteLater();
    if (creating->isError()) {
        qWarning("OrvesaTranslate: this Wayland desktop lets no program have global shortcuts. %s", bindByHand);
    }
}

QString PortalHotKeys::expectAnswer(const char *slot)
{
    auto bus = SessionBus::connection();
    const QString token = u"orvesa%1"_s.arg(++m_lastToken);
    if (!bus) {
        return token;
    }
    QString sender = bus->baseService().mid(1);
    sender.replace(u'.', u'_');
    m_awaitedRequest = u"%1/request/%2/%3"_s.arg(objectPath(), sender, token);
    bus->connect(service(), m_awaitedRequest, requestInterface(), u"Response"_s, this, slot);
    return token;
}

bool PortalHotKeys::isAwaited(const QDBusMessage &answer, const char *slot)
{
    if (auto bus = SessionBus::connection()) {
        bus->disconnect(service(), answer.path(), requestInterface(), u"Response"_s, this, slot);
    }
    return answer.path() == m_awaitedRequest;
}

void PortalHotKeys::sessionAnswered(uint response, const QVariantMap &results, const QDBusMessage &answer)
{
    const QString session = results.value(u"session_handle"_s).toString();
    if (!isAwaited(answer, SLOT(sessionAnswered(uint, QVariantMap, QDBusMessage)))) {
        close(session); // the shortcuts have changed since
        return;
    }
    auto bus = SessionBus::connection();
    if (!bus) {
        return;
    }
    m_session = session;
    if (response != 0 || m_session.isEmpty()) {
        qWarning("OrvesaTranslate: the desktop refused a session for global shortcuts. %s", bindByHand);
        return;
    }
    if (const auto given = triggersIn(results); static_cast<std::size_t>(given.size()) == m_bound.size()) {
        reportMissingKeys(given);
        return; // asked once more, Plasma 5 would open its settings at every start
    }
    const QString token = expectAnswer(SLOT(bindingAnswered(uint, QVariantMap, QDBusMessage)));
    bus->asyncCall(
        portalCall(u"BindShortcuts"_s, {QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(wishes()),
                                        QString(), QVariantMap{{u"handle_token"_s, token}}}));
}

QList<PortalShortcut> PortalHotKeys::wishes() const
{
    QList<PortalShortcut> shortcuts;
    for (const auto &[id, hotKey] : m_bound) {
        const QString trigger = PortalShortcut::trigger(hotKey.keyCode, hotKey.modifiers);
        const auto described = m_descriptions.find(id);
        const QString description = described != m_descriptions.end() ? described->second : QString();
        shortcuts.append({.id = shortcutName(id, trigger),
                          .properties = {{u"description"_s, description}, {u"preferred_trigger"_s, trigger}}});
    }
    return shortcuts;
}

QMap<QString, QString> PortalHotKeys::triggersIn(const QVariantMap &results) const
{
    QMap<QString, QString> triggers;
    const QVariant value = results.value(u"shortcuts"_s);
    if (!value.canConvert<QDBusArgument>()) {
        return triggers;
    }
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "a(sa{sv})"_L1) {
        return triggers;
    }
    const auto given = qdbus_cast<QList<PortalShortcut>>(argument);
    for (const PortalShortcut &wish : wishes()) {
        const auto found = std::ranges::find(given, wish.id, &PortalShortcut::id);
        if (found != given.end()) {
            triggers.insert(wish.id, found->properties.value(u"trigger_description"_s).toString());
        }
    }
    return triggers;
}

void PortalHotKeys::reportMissingKeys(const QMap<QString, QString> &triggers)
{
    if (std::ranges::any_of(triggers, &QString::isEmpty)) {
        qWarning("OrvesaTranslate: the desktop gave a shortcut no keys, for another program has them. Choose others in "
                 "the settings window, or in the desktop's settings for shortcuts under Orvesa_Translate.");
    }
}

void PortalHotKeys::bindingAnswered(uint response, const QVariantMap &results, const QDBusMessage &answer)
{
    if (!isAwaited(answer, SLOT(bindingAnswered(uint, QVariantMap, QDBusMessage)))) {
        return;
    }
    if (response != 0) {
        qWarning("OrvesaTranslate: the desktop did not confirm the global shortcuts");
    }
    reportMissingKeys(triggersIn(results));
}

void PortalHotKeys::activated(const QDBusMessage &signal)
{
    const QString session = signal.arguments().value(0).value<QDBusObjectPath>().path();
    const QString shortcut = signal.arguments().value(1).toString();
    const auto bound = std::ranges::find_if(m_bound, [&shortcut](const auto &entry) {
        const HotKey &hotKey = entry.second;
        return shortcut == shortcutName(entry.first, PortalShortcut::trigger(hotKey.keyCode, hotKey.modifiers));
    });
    if (session == m_session && bound != m_bound.end() && m_handler) {
        const Handler handler = m_handler; // it may remove itself
        (void)handler(bound->second.id);
    }
}

void PortalHotKeys::closeSession()
{
    m_awaitedRequest.clear();
    close(std::exchange(m_session, {}));
}

void PortalHotKeys::close(const QString &session)
{
    auto bus = SessionBus::connection();
    if (session.isEmpty() || !bus) {
        return;
    }
    bus->send(QDBusMessage::createMethodCall(service(), session, u"org.freedesktop.portal.Session"_s, u"Close"_s));
}

} // namespace orvesa
