#include "Platform/linux/PortalHotKeys.h"

#include "Platform/linux/PortalCalls.h"
#include "Platform/linux/PortalShortcut.h"
#include "Platform/linux/SessionBus.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QMetaObject>

#include <algorithm>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;
using PortalCalls::pathOf;

namespace {

constexpr const char *bindByHand =
    "Bind \"orvesa-translate --perform translateSelection\" (or polishSelection, ocrTranslate, prompt:NAME) to keys in "
    "the desktop's keyboard settings.";

/// One desktop shows this name in its settings, and keeps the keys that the user chose there under it, for programs of
/// which it knows nothing else. So it is always the same.
constexpr auto sessionToken = "Orvesa_Translate"_L1;

} // namespace

QString PortalHotKeys::HotKey::name() const
{
    return u"hotkey-%1-%2"_s.arg(id.id).arg(trigger);
}

PortalHotKeys::PortalHotKeys(X11Connection &connection, std::chrono::milliseconds closingBound,
                             std::chrono::milliseconds creationBound)
    : m_keys(connection, [this] { keysChanged(); }), m_closingBound(closingBound)
{
    m_creationBound.setSingleShot(true);
    m_creationBound.setInterval(creationBound);
    connect(&m_creationBound, &QTimer::timeout, this, &PortalHotKeys::giveUpCreation);
}

PortalHotKeys::~PortalHotKeys()
{
    if (auto bus = SessionBus::connection(); bus && !m_session.isEmpty()) {
        bus->send(PortalCalls::closingCall(m_session));
    }
}

bool PortalHotKeys::isOffered()
{
    if (!m_isOffered) {
        m_isOffered = false;
        if (auto bus = SessionBus::connection()) {
            m_isOffered = PortalCalls::mayHaveShortcuts(*bus);
            PortalShortcut::registerType();
            bus->connect(PortalCalls::service, PortalCalls::objectPath, PortalCalls::shortcutsInterface, u"Activated"_s,
                         this, SLOT(activated(QDBusMessage)));
            bus->connect(PortalCalls::service, QString(), PortalCalls::sessionInterface, u"Closed"_s, this,
                         SLOT(sessionClosed(QDBusMessage)));
            const auto *const watcher =
                new QDBusServiceWatcher(PortalCalls::service, *bus, QDBusServiceWatcher::WatchForOwnerChange, this);
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
    const auto labelled = m_labels.find(id.id);
    HotKey hotKey{.keyCode = keyCode,
                  .modifiers = modifiers,
                  .id = id,
                  .label = labelled != m_labels.end() ? labelled->second : QString()};
    hotKey.trigger = m_keys.trigger(keyCode, modifiers, hotKey.label);
    if (hotKey.trigger.isEmpty()) {
        return {HotKeyStatus::hotKeyInvalid, 0};
    }
    // Two places can have the same face.
    const bool isDuplicate = std::ranges::any_of(m_hotKeys, [&](const auto &entry) {
        const HotKey &other = entry.second;
        return (other.keyCode == keyCode && other.modifiers == modifiers) || other.trigger == hotKey.trigger;
    });
    if (isDuplicate) {
        return {HotKeyStatus::hotKeyExists, 0};
    }
    m_hotKeys.emplace(++m_lastReference, std::move(hotKey));
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

void PortalHotKeys::labelKey(HotKeyID id, const QString &keyLabel)
{
    m_labels[id.id] = keyLabel;
}

void PortalHotKeys::keysChanged()
{
    for (auto &[reference, hotKey] : m_hotKeys) {
        const QString trigger = m_keys.triggerWithFace(hotKey.keyCode, hotKey.modifiers, hotKey.label);
        if (!trigger.isEmpty()) {
            hotKey.trigger = trigger;
        }
    }
    scheduleBinding();
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
        bus.asyncCall(PortalCalls::shortcutsCall(u"CreateSession"_s, {options}), m_creationBound.interval()), this);
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
        bus.asyncCall(PortalCalls::closingCall(std::exchange(m_session, {})), static_cast<int>(m_closingBound.count())),
        this);
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
        m_askedAgain.clear();
    }
    // One that ends is not started again for this. One that comes is told, unless it comes because it is being asked.
    if (!owner.isEmpty() && m_stage != Stage::creating) {
        m_bound.clear();
        scheduleBinding();
    }
}

void PortalHotKeys::sessionClosed(const QDBusMessage &signal)
{
    // One that is closed from here is no longer the current one.
    if (m_session.isEmpty() || signal.path() != m_session) {
        return;
    }
    m_session.clear();
    m_awaitedRequest.clear();
    if (m_bound == m_askedAgain) {
        qWarning(
            "OrvesaTranslate: the desktop closed the session of the global shortcuts once more; there are none until "
            "they are changed. %s",
            bindByHand);
        return;
    }
    qWarning("OrvesaTranslate: the desktop closed the session of the global shortcuts; another one is asked for");
    m_askedAgain = std::exchange(m_bound, {});
    scheduleBinding();
}

QString PortalHotKeys::expectAnswer(QDBusConnection bus, const char *slot)
{
    const QString token = u"orvesa%1"_s.arg(++m_lastToken);
    m_awaitedRequest = pathOf(bus, u"request"_s, token);
    bus.connect(PortalCalls::service, m_awaitedRequest, PortalCalls::requestInterface, u"Response"_s, this, slot);
    return token;
}

bool PortalHotKeys::isAwaited(const QDBusMessage &answer, const char *slot)
{
    if (auto bus = SessionBus::connection()) {
        bus->disconnect(PortalCalls::service, answer.path(), PortalCalls::requestInterface, u"Response"_s, this, slot);
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
    auto *const binding =
        new QDBusPendingCallWatcher(bus.asyncCall(PortalCalls::shortcutsCall(u"BindShortcuts"_s, arguments)), this);
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
        shortcuts.append({.id = hotKey.name(),
                          .properties = {{u"description"_s, description}, {u"preferred_trigger"_s, hotKey.trigger}}});
    }
    return shortcuts;
}

QMap<QString, QString> PortalHotKeys::triggersIn(const QVariantMap &results) const
{
    QMap<QString, QString> triggers;
    const QList<PortalShortcut> given = PortalShortcut::listIn(results.value(u"shortcuts"_s));
    for (const auto &[id, hotKey] : m_bound) {
        const auto found = std::ranges::find(given, hotKey.name(), &PortalShortcut::id);
        if (found != given.end()) {
            triggers.insert(hotKey.name(), found->properties.value(u"trigger_description"_s).toString());
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
        std::ranges::find_if(m_bound, [&shortcut](const auto &entry) { return shortcut == entry.second.name(); });
    if (session != m_session || bound == m_bound.end()) {
        return;
    }
    m_askedAgain.clear(); // the session serves
    if (m_handler) {
        const Handler handler = m_handler; // it may remove itself
        (void)handler(bound->second.id);
    }
}

} // namespace orvesa
