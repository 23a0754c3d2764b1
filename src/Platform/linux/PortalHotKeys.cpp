#include "Platform/linux/PortalHotKeys.h"

#include "Platform/linux/PortalShortcut.h"
#include "Platform/linux/SessionBus.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
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

constexpr auto service = "org.freedesktop.portal.Desktop"_L1;
constexpr auto objectPath = "/org/freedesktop/portal/desktop"_L1;
constexpr auto shortcutsInterface = "org.freedesktop.portal.GlobalShortcuts"_L1;
constexpr auto requestInterface = "org.freedesktop.portal.Request"_L1;
/// One desktop shows this name in its settings, and keeps the keys that the user chose there under it, for programs of
/// which it knows nothing else. So it is always the same.
constexpr auto sessionToken = "Orvesa_Translate"_L1;

/// Under this name the desktop keeps the keys that the user gave a shortcut. The keys that are wished for belong to it:
/// with others it is another shortcut, and the desktop looks at the wish again.
QString shortcutName(quint32 id, const QString &trigger)
{
    return u"hotkey-%1-%2"_s.arg(id).arg(trigger);
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
    return answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toStringList().contains(service);
}

QDBusMessage closingCall(const QString &session)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, session, u"org.freedesktop.portal.Session"_s, u"Close"_s);
    message.setAutoStartService(false); // a portal that has gone has no session
    return message;
}

QDBusMessage portalCall(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, objectPath, shortcutsInterface, method);
    message.setArguments(arguments);
    return message;
}

} // namespace

PortalHotKeys::PortalHotKeys(std::chrono::milliseconds closingBound, std::chrono::milliseconds creationBound)
    : m_closingBound(closingBound)
{
    m_creationBound.setSingleShot(true);
    m_creationBound.setInterval(creationBound);
    connect(&m_creationBound, &QTimer::timeout, this, &PortalHotKeys::giveUpCreation);
}

PortalHotKeys::~PortalHotKeys()
{
    if (auto bus = SessionBus::connection(); bus && !m_session.isEmpty()) {
        bus->send(closingCall(m_session));
    }
}

bool PortalHotKeys::isOffered()
{
    if (!m_isOffered) {
        m_isOffered = false;
        if (auto bus = SessionBus::connection()) {
            QDBusMessage question =
                QDBusMessage::createMethodCall(service, objectPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
            question.setArguments({shortcutsInterface, u"version"_s});
            question.setAutoStartService(false);
            const QDBusMessage answer = bus->call(question, QDBus::Block, boundInMilliseconds);
            // At login the portal may be still to come, or on its way; what it can do shows when it is asked for it.
            m_isOffered = answer.type() == QDBusMessage::ReplyMessage
                              ? answer.arguments().value(0).value<QDBusVariant>().variant().toUInt() >= 1
                              : isStillToCome(*bus, answer);
            PortalShortcut::registerType();
            bus->connect(service, objectPath, shortcutsInterface, u"Activated"_s, this, SLOT(activated(QDBusMessage)));
            const auto *const watcher =
                new QDBusServiceWatcher(service, *bus, QDBusServiceWatcher::WatchForOwnerChange, this);
            connect(
                watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString &, const QString &earlier, const QString &now) { portalChanged(earlier, now); });
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
    const QString trigger = PortalShortcut::trigger(keyCode, modifiers);
    if (trigger.isEmpty()) {
        return {HotKeyStatus::hotKeyInvalid, 0};
    }
    m_hotKeys.emplace(++m_lastReference, HotKey{keyCode, modifiers, id, trigger, shortcutName(id.id, trigger)});
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

PortalHotKeys::HotKeys PortalHotKeys::wanted() const
{
    HotKeys wanted;
    for (const auto &[reference, hotKey] : m_hotKeys) {
        wanted[hotKey.id.id] = hotKey;
    }
    return wanted;
}

void PortalHotKeys::bind()
{
    m_bindingScheduled = false;
    auto bus = SessionBus::connection();
    HotKeys hotKeys = wanted();
    if (!bus || m_stage != Stage::settled || hotKeys == m_bound) {
        return;
    }
    if (!m_session.isEmpty()) {
        closeSession(*bus);
        return;
    }
    m_bound = std::move(hotKeys);
    if (!m_bound.empty()) {
        createSession(*bus);
    }
}

void PortalHotKeys::createSession(const QDBusConnection &bus)
{
    // A session takes one set of shortcuts; another set needs another session. Plasma 5 gives the keys out right here;
    // what others make of it is asked for when there is a session.
    const QString token = expectAnswer(bus, SLOT(sessionAnswered(uint, QVariantMap, QDBusMessage)));
    const QVariantMap options{{u"handle_token"_s, token},
                              {u"session_handle_token"_s, sessionToken},
                              {u"shortcuts"_s, QVariant::fromValue(wishes())}};
    m_stage = Stage::creating;
    m_creationBound.start();
    m_creating = new QDBusPendingCallWatcher(
        bus.asyncCall(portalCall(u"CreateSession"_s, {options}), m_creationBound.interval()), this);
    connect(m_creating, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *creating) {
        creating->deleteLater();
        if (creating == m_creating && creating->isError()) {
            giveUpCreation();
        }
    });
}

void PortalHotKeys::creationEnded()
{
    m_creationBound.stop();
    m_creating = nullptr;
    m_stage = Stage::settled;
}

void PortalHotKeys::giveUpCreation()
{
    qWarning("OrvesaTranslate: this Wayland desktop lets no program have global shortcuts. %s", bindByHand);
    creationEnded();
    if (auto bus = SessionBus::connection()) {
        // It may be made yet: its answer is still listened to, and it is closed before another is asked for.
        m_session = pathOf(*bus, u"session"_s, sessionToken);
    }
    bind();
}

void PortalHotKeys::closeSession(const QDBusConnection &bus)
{
    m_stage = Stage::closing;
    m_awaitedRequest.clear();
    m_bound.clear();
    // Until it has answered, the portal may take the next session, which has the same path, for the one that is closed.
    auto *const closing = new QDBusPendingCallWatcher(
        bus.asyncCall(closingCall(std::exchange(m_session, {})), static_cast<int>(m_closingBound.count())), this);
    connect(closing, &QDBusPendingCallWatcher::finished, this, [this, closing] {
        closing->deleteLater();
        m_stage = Stage::settled;
        bind();
    });
}

void PortalHotKeys::portalChanged(const QString &earlierOwner, const QString &owner)
{
    if (!earlierOwner.isEmpty()) {
        if (m_stage == Stage::creating) {
            creationEnded();
        }
        if (!m_bound.empty()) {
            qWarning(
                "OrvesaTranslate: the desktop's portal is gone, and the global shortcuts with it until it is back");
        }
        m_awaitedRequest.clear();
        m_session.clear();
        m_bound.clear();
    }
    // One that ends is not started again for this. One that comes is told, unless it comes because it is being asked.
    if (!owner.isEmpty() && m_stage != Stage::creating) {
        m_bound.clear();
        scheduleBinding();
    }
}

QString PortalHotKeys::pathOf(const QDBusConnection &bus, const QString &kind, const QString &token)
{
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return u"%1/%2/%3/%4"_s.arg(objectPath, kind, sender, token);
}

QString PortalHotKeys::expectAnswer(QDBusConnection bus, const char *slot)
{
    const QString token = u"orvesa%1"_s.arg(++m_lastToken);
    m_awaitedRequest = pathOf(bus, u"request"_s, token);
    bus.connect(service, m_awaitedRequest, requestInterface, u"Response"_s, this, slot);
    return token;
}

bool PortalHotKeys::isAwaited(const QDBusMessage &answer, const char *slot)
{
    if (auto bus = SessionBus::connection()) {
        bus->disconnect(service, answer.path(), requestInterface, u"Response"_s, this, slot);
    }
    return answer.path() == m_awaitedRequest;
}

void PortalHotKeys::sessionAnswered(uint response, const QVariantMap &results, const QDBusMessage &answer)
{
    auto bus = SessionBus::connection();
    if (!isAwaited(answer, SLOT(sessionAnswered(uint, QVariantMap, QDBusMessage))) || !bus) {
        return;
    }
    creationEnded();
    m_session = response == 0 ? results.value(u"session_handle"_s).toString() : QString();
    if (wanted() != m_bound) {
        bind();
        return;
    }
    if (m_session.isEmpty()) {
        qWarning("OrvesaTranslate: the desktop refused a session for global shortcuts. %s", bindByHand);
        return;
    }
    if (const auto given = triggersIn(results); static_cast<std::size_t>(given.size()) == m_bound.size()) {
        reportMissingKeys(given);
        return; // asked once more, Plasma 5 would open its settings at every start
    }
    bindShortcuts(*bus);
}

void PortalHotKeys::bindShortcuts(const QDBusConnection &bus)
{
    const QString token = expectAnswer(bus, SLOT(bindingAnswered(uint, QVariantMap, QDBusMessage)));
    const QVariantList arguments{QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(wishes()),
                                 QString(), QVariantMap{{u"handle_token"_s, token}}};
    auto *const binding = new QDBusPendingCallWatcher(bus.asyncCall(portalCall(u"BindShortcuts"_s, arguments)), this);
    connect(binding, &QDBusPendingCallWatcher::finished, this, [this, binding, request = m_awaitedRequest] {
        binding->deleteLater();
        if (binding->isError() && request == m_awaitedRequest) {
            qWarning("OrvesaTranslate: the desktop did not take the global shortcuts");
        }
    });
}

QList<PortalShortcut> PortalHotKeys::wishes() const
{
    QList<PortalShortcut> shortcuts;
    for (const auto &[id, hotKey] : m_bound) {
        const auto described = m_descriptions.find(id);
        const QString description = described != m_descriptions.end() ? described->second : QString();
        shortcuts.append({.id = hotKey.name,
                          .properties = {{u"description"_s, description}, {u"preferred_trigger"_s, hotKey.trigger}}});
    }
    return shortcuts;
}

QMap<QString, QString> PortalHotKeys::triggersIn(const QVariantMap &results) const
{
    QMap<QString, QString> triggers;
    const QList<PortalShortcut> given = PortalShortcut::listIn(results.value(u"shortcuts"_s));
    for (const auto &[id, hotKey] : m_bound) {
        const auto found = std::ranges::find(given, hotKey.name, &PortalShortcut::id);
        if (found != given.end()) {
            triggers.insert(hotKey.name, found->properties.value(u"trigger_description"_s).toString());
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
    const auto bound =
        std::ranges::find_if(m_bound, [&shortcut](const auto &entry) { return shortcut == entry.second.name; });
    if (session == m_session && bound != m_bound.end() && m_handler) {
        const Handler handler = m_handler; // it may remove itself
        (void)handler(bound->second.id);
    }
}

} // namespace orvesa
