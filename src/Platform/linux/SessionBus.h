#pragma once

// The login session's message bus, found without ever starting one.
//
// The bus libraries start a bus of their own when none is named; a program that runs without a session must not do
// that. Ask isAnnounced() before anything that connects. Main thread.

#include <QDBusConnection>

#include <optional>

namespace orvesa::SessionBus {

/// Whether the environment names a session bus or the runtime folder holds one.
[[nodiscard]] bool isAnnounced();
/// Qt's shared connection, or nothing when there is no session bus or it does not answer.
[[nodiscard]] std::optional<QDBusConnection> connection();

} // namespace orvesa::SessionBus
