#pragma once

// System-wide hot keys of a Wayland session, where no program may hold a key: the desktop's portal for global shortcuts
// has the user confirm them and tells when one is pressed.
//
// Main thread. What is registered in one go is bound in one go, from the event loop, and anew when it changes or the
// keyboard's layouts do. The keys are wishes: the user may choose others there. A desktop without the portal is said so
// once in the log, and every registration ends with notAvailable.
//
// The session with the portal has always the same name, so there is never more than one: one is closed, and that is
// answered, before the next is asked for, and what changes while an answer is awaited is bound after it.

#include "Platform/HotKeyPort.h"
#include "Platform/linux/PortalKeys.h"
#include "Platform/linux/PortalShortcut.h"

#include <QDBusMessage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariantMap>

#include <chrono>
#include <map>
#include <optional>

QT_FORWARD_DECLARE_CLASS(QDBusPendingCallWatcher)
QT_FORWARD_DECLARE_CLASS(QDBusConnection)

namespace orvesa {

class PortalHotKeys final : public QObject, public HotKeyPort {
    Q_OBJECT

public:
    /// How long a session may take to be closed, and to be made: at login the portal is still being started.
    /// The connection, which must outlive this object, tells what the keys type.
    explicit PortalHotKeys(X11Connection &connection, std::chrono::milliseconds closingBound = std::chrono::seconds(3),
                           std::chrono::milliseconds creationBound = std::chrono::seconds(30));
    ~PortalHotKeys() override;

    [[nodiscard]] qint32 installHandler(Handler handler) override;
    void removeHandler() override;
    [[nodiscard]] HotKeyRegistration registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id) override;
    qint32 unregisterHotKey(HotKeyRef reference) override;
    void describe(HotKeyID id, const QString &description) override;
    void labelKey(HotKeyID id, const QString &keyLabel) override;

private Q_SLOTS:
    void sessionAnswered(uint response, const QVariantMap &results, const QDBusMessage &answer);
    void bindingAnswered(uint response, const QVariantMap &results, const QDBusMessage &answer);
    void activated(const QDBusMessage &signal);
    void sessionClosed(const QDBusMessage &signal);

private:
    struct HotKey {
        quint32 keyCode = 0;
        quint32 modifiers = 0;
        HotKeyID id;
        QString label{};   ///< the key's face
        QString trigger{}; ///< the keys as the portal writes them; a keymap is read to find out
        /// The shortcut's. Under it the desktop keeps the keys that the user gave the shortcut. The keys that are
        /// wished for belong to it: with others it is another shortcut, and the desktop looks at the wish again.
        [[nodiscard]] QString name() const;
        bool operator==(const HotKey &other) const { return id.id == other.id.id && trigger == other.trigger; }
    };
    using HotKeys = std::map<quint32, HotKey>; ///< by identifier
    enum class Stage { settled, creating, closing };

    [[nodiscard]] bool isOffered();
    void keysChanged();
    void scheduleBinding();
    /// Takes one step towards what is registered: closes the session there is, or asks for one. Each step ends here.
    void bind();
    [[nodiscard]] HotKeys wanted() const;
    void createSession(const QDBusConnection &bus);
    void creationEnded();
    void giveUpCreation();
    void bindShortcuts(const QDBusConnection &bus);
    void closeSession(const QDBusConnection &bus);
    void portalChanged(const QString &earlierOwner, const QString &owner);
    /// What is to be bound, as the portal takes it.
    [[nodiscard]] QList<PortalShortcut> wishes() const;
    /// The keys that the desktop gave, in its own words, by the names of shortcuts; empty where it gave none.
    [[nodiscard]] QMap<QString, QString> triggersIn(const QVariantMap &results) const;
    static void reportMissingKeys(const QMap<QString, QString> &triggers);
    /// Announces the slot that takes the answer to the next request, and returns that request's token.
    [[nodiscard]] QString expectAnswer(QDBusConnection bus, const char *slot);
    /// Whether the answer is to the last request. One before it may be answered late: a person may be asked first.
    [[nodiscard]] bool isAwaited(const QDBusMessage &answer, const char *slot);

    Handler m_handler;
    std::map<HotKeyRef, HotKey> m_hotKeys;
    std::map<quint32, QString> m_descriptions;
    std::map<quint32, QString> m_labels;
    PortalKeys m_keys;
    HotKeys m_bound; ///< what was last asked for
    /// What was asked for again when the desktop had closed its session. Not a second time before one of them was
    /// pressed, or two programs that close each other's would never end.
    HotKeys m_askedAgain;
    Stage m_stage = Stage::settled;
    QDBusPendingCallWatcher *m_creating = nullptr; ///< the call for a session; null when nobody waits for it
    QTimer m_creationBound;
    std::chrono::milliseconds m_closingBound;
    std::optional<bool> m_isOffered;
    bool m_bindingScheduled = false;
    HotKeyRef m_lastReference = 0;
    quint64 m_lastToken = 0;
    QString m_awaitedRequest; ///< the path of the request whose answer is waited for
    QString m_session;
};

} // namespace orvesa
