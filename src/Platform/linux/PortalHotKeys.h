#pragma once

// System-wide hot keys of a Wayland session, where no program may hold a key: the desktop's portal for global shortcuts
// has the user confirm them and tells when one is pressed.
//
// Main thread. What is registered in one go is bound in one go, from the event loop, and anew when it changes. The keys
// are wishes: the user may choose others there. A desktop without the portal is said so once in the log, and every
// registration ends with notAvailable.

#include "Platform/HotKeyPort.h"
#include "Platform/linux/PortalShortcut.h"

#include <QDBusMessage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <map>
#include <optional>

QT_FORWARD_DECLARE_CLASS(QDBusPendingCallWatcher)

namespace orvesa {

class PortalHotKeys final : public QObject, public HotKeyPort {
    Q_OBJECT

public:
    PortalHotKeys();
    ~PortalHotKeys() override;

    [[nodiscard]] qint32 installHandler(Handler handler) override;
    void removeHandler() override;
    [[nodiscard]] HotKeyRegistration registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id) override;
    qint32 unregisterHotKey(HotKeyRef reference) override;
    void describe(HotKeyID id, const QString &description) override;

private Q_SLOTS:
    void sessionAnswered(uint response, const QVariantMap &results, const QDBusMessage &answer);
    void bindingAnswered(uint response, const QVariantMap &results, const QDBusMessage &answer);
    void activated(const QDBusMessage &signal);

private:
    struct HotKey {
        quint32 keyCode = 0;
        quint32 modifiers = 0;
        HotKeyID id;
        bool operator==(const HotKey &other) const
        {
            return keyCode == other.keyCode && modifiers == other.modifiers && id.id == other.id.id;
        }
    };
    using HotKeys = std::map<HotKeyRef, HotKey>;

    [[nodiscard]] bool isOffered();
    void scheduleBinding();
    void bind();
    /// What is to be bound, as the portal takes it.
    [[nodiscard]] QList<PortalShortcut> wishes() const;
    /// The keys that the desktop gave, in its own words, by the names of shortcuts; empty where it gave none.
    [[nodiscard]] QMap<QString, QString> triggersIn(const QVariantMap &results) const;
    static void reportMissingKeys(const QMap<QString, QString> &triggers);
    void sessionCalled(QDBusPendingCallWatcher *creating);
    void closeSession();
    static void close(const QString &session);
    /// Announces the slot that takes the answer to the next request, and returns that request's token.
    [[nodiscard]] QString expectAnswer(const char *slot);
    /// Whether the answer is to the last request. One before it may be answered late: a person may be asked first.
    [[nodiscard]] bool isAwaited(const QDBusMessage &answer, const char *slot);

    Handler m_handler;
    HotKeys m_hotKeys;
    std::map<quint32, QString> m_descriptions;
    std::map<quint32, HotKey> m_bound; ///< what was last asked for, by identifier
    std::optional<bool> m_isOffered;
    bool m_bindingScheduled = false;
    HotKeyRef m_lastReference = 0;
    quint64 m_lastToken = 0;
    QString m_awaitedRequest; ///< the path of the request whose answer is waited for
    QString m_session;
};

} // namespace orvesa
