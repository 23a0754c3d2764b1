#pragma once

// What is said to the portal for global shortcuts, and under which names. Functions without state; any thread.

#include <QDBusMessage>
#include <QLatin1StringView>
#include <QString>
#include <QVariantList>

QT_FORWARD_DECLARE_CLASS(QDBusConnection)

namespace orvesa::PortalCalls {

inline constexpr QLatin1StringView service("org.freedesktop.portal.Desktop");
inline constexpr QLatin1StringView objectPath("/org/freedesktop/portal/desktop");
inline constexpr QLatin1StringView shortcutsInterface("org.freedesktop.portal.GlobalShortcuts");
inline constexpr QLatin1StringView requestInterface("org.freedesktop.portal.Request");
inline constexpr QLatin1StringView sessionInterface("org.freedesktop.portal.Session");

/// Whether the portal has shortcuts, or has not come to answering yet. Waits for it a quarter of a second, twice at
/// most, and starts nothing.
[[nodiscard]] bool mayHaveShortcuts(const QDBusConnection &bus);
[[nodiscard]] QDBusMessage shortcutsCall(const QString &method, const QVariantList &arguments);
[[nodiscard]] QDBusMessage closingCall(const QString &session);
/// The path that the portal gives what this program asks for under a token; `kind` is "session" or "request".
[[nodiscard]] QString pathOf(const QDBusConnection &bus, const QString &kind, const QString &token);

} // namespace orvesa::PortalCalls
