#include "Platform/linux/PortalHotKeys.h"

#include "Platform/linux/PortalShortcut.h"
#include "Platform/linux/SessionBus.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QMetaObject>

#include <algorithm>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr int boundInMilliseconds = 250;

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

QString idPrefix()
{
    return u"hotkey-"_s;
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
            const QDBusMessage answer = bus->call(question, QDBus::Block, boundInMilliseconds);
            m_isOffered = answer.type() == QDBusMessage::ReplyMessage &&
                          answer.arguments().value(0).value<QDBusVariant>().variant().toUInt() >= 1;
            PortalShortcut::registerType();
            bus->connect(service(), objectPath(), shortcutsInterface(), u"Activated"_s, this,
                         SLOT(activated(QDBusMessage)));
        }
        if (!*m_isOffered) {
            qWarning(
                "OrvesaTranslate: this Wayland desktop lets no program have global shortcuts. Bind "
                "\"orvesa-translate --perform translateSelection\" (or polishSelection, ocrTranslate, prompt:NAME) "
                "to keys in the desktop's keyboard settings.");
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
    // A session takes one set of shortcuts; another set needs another session.
    const QString token = expectAnswer(SLOT(sessionAnswered(uint, QVariantMap, QDBusMessage)));
    const QVariantMap options{{u"handle_token"_s, token}, {u"session_handle_token"_s, token}};
    bus->asyncCall(portalCall(u"CreateSession"_s, {options}));
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
        qWarning("OrvesaTranslate: the desktop refused a session for global shortcuts");
        return;
    }
    QList<PortalShortcut> shortcuts;
    for (const auto &[id, hotKey] : m_bound) {
        shortcuts.append(
            {.id = idPrefix() + QString::number(id),
             .properties = {{u"description"_s, m_descriptions[id]},
                            {u"preferred_trigger"_s, PortalShortcut::trigger(hotKey.keyCode, hotKey.modifiers)}}});
    }
    const QString token = expectAnswer(SLOT(bindingAnswered(uint, QVariantMap, QDBusMessage)));
    bus->asyncCall(
        portalCall(u"BindShortcuts"_s, {QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(shortcuts),
                                        QString(), QVariantMap{{u"handle_token"_s, token}}}));
}

void PortalHotKeys::bindingAnswered(uint response, const QVariantMap &results, const QDBusMessage &answer)
{
    Q_UNUSED(results)
    if (isAwaited(answer, SLOT(bindingAnswered(uint, QVariantMap, QDBusMessage))) && response != 0) {
        qWarning("OrvesaTranslate: the desktop did not confirm the global shortcuts");
    }
}

void PortalHotKeys::activated(const QDBusMessage &signal)
{
    const QString session = signal.arguments().value(0).value<QDBusObjectPath>().path();
    const QString shortcut = signal.arguments().value(1).toString();
    bool isNumber = false;
    const quint32 id = shortcut.startsWith(idPrefix()) ? shortcut.mid(idPrefix().size()).toUInt(&isNumber) : 0;
    const auto bound = m_bound.find(id);
    if (session == m_session && isNumber && bound != m_bound.end() && m_handler) {
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
