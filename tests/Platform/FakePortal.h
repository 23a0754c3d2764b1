#pragma once

// The global shortcuts of a Wayland desktop's portal, as far as a program sees them, for a bus of the tests' own.
//
// It says on standard output what it is asked for, and does what standard input tells it: "press ID", "refuse", "hold"
// (keep answers back, as long as a person is asked), "hold closing" (keep sessions open that are to be closed), "go
// on", "swallow closing" (close sessions without an answer), "lose" (end the session without a word), "close session"
// and "close another session" (end the session, or none, and say so to who has it), and "give" or "give nothing" (keys
// with the session already, as Plasma 5 does). A session's path is taken until the session is closed; who asks for it
// meanwhile is refused, and loses the session that has it, as with the real one, which tidies up after a refusal by
// closing what it finds there. Main thread of its own process.

#include "Platform/linux/PortalShortcut.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QList>
#include <QObject>

namespace orvesa::tests {

class FakePortalSession;

class FakePortal final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.GlobalShortcuts")
    Q_PROPERTY(uint version READ version)

public:
    explicit FakePortal(QDBusConnection bus);
    ~FakePortal() override;

    [[nodiscard]] uint version() const { return 1; }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface's methods on the bus
    QDBusObjectPath CreateSession(const QVariantMap &options);
    QDBusObjectPath BindShortcuts(const QDBusObjectPath &session, const QList<orvesa::PortalShortcut> &shortcuts,
                                  const QString &parentWindow, const QVariantMap &options);
    // NOLINTEND(readability-identifier-naming)
    void obey(const QString &order);

private:
    [[nodiscard]] QString pathFor(const QString &kind, const QString &token) const;
    void answer(const QString &request, uint response, const QVariantMap &results);
    void refuse(const QString &request);
    void closeSession(const QDBusMessage &call);
    void endSession();
    void tellClosed(const QString &session);

    QDBusConnection m_bus;
    QString m_session; ///< its path; empty while there is none
    FakePortalSession *m_sessionObject = nullptr;
    uint m_response = 0;
    bool m_holds = false;
    enum class Closing { answered, held, unanswered } m_closing = Closing::answered;
    enum class Gift { nothing, shortcuts, shortcutsWithoutKeys } m_gift = Gift::nothing;
    QList<QDBusMessage> m_held;
    QList<QDBusMessage> m_heldClosings;
};

} // namespace orvesa::tests
