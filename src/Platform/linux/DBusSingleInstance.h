#pragma once

// One utility per session over the session bus: the name is the identifier, the interface is
// org.freedesktop.Application at the path that the name gives (dots become slashes).
//
// Main thread. Every call to the bus or to the running instance waits two seconds at most. No bus is ever started.

#include "Platform/SingleInstancePort.h"

#include <memory>

namespace orvesa {

class DBusApplicationObject;
class DBusDiagnosticsObject;

class DBusSingleInstance final : public SingleInstancePort {
public:
    DBusSingleInstance();
    ~DBusSingleInstance() override;
    Q_DISABLE_COPY_MOVE(DBusSingleInstance)

    [[nodiscard]] Claim claim(const QString &identifier, Handlers handlers) override;
    [[nodiscard]] bool ask(const QString &identifier, const QString &action) override;
    [[nodiscard]] std::optional<QList<quint32>> heldShortcuts(const QString &identifier) override;

private:
    void release();

    QString m_identifier;
    std::unique_ptr<DBusApplicationObject> m_object;
    std::unique_ptr<DBusDiagnosticsObject> m_diagnostics;
};

} // namespace orvesa
