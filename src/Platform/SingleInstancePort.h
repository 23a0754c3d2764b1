#pragma once

// One running utility per login session, and the way another process asks it for something.
//
// Follows the freedesktop application interface (org.freedesktop.Application, Desktop Entry 1.5). Main thread.

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace orvesa {

class SingleInstancePort {
public:
    enum class Claim {
        owned,       ///< this process is the one instance
        runsAlready, ///< another process is
        unavailable  ///< no session bus: nothing to claim, run anyway
    };

    struct Handlers {
        std::function<void()> activate;                     ///< show the settings window
        std::function<void(const QString &action)> perform; ///< run an action by name
        std::function<QList<quint32>()> heldShortcuts{};    ///< the identifiers of the shortcuts that it holds
    };

    virtual ~SingleInstancePort() = default;

    /// Claims the session's one place under the identifier and serves `handlers` while it is held.
    [[nodiscard]] virtual Claim claim(const QString &identifier, Handlers handlers) = 0;
    /// Asks the running instance to activate, or to perform `action` when it is not empty. False when none answered
    /// within two seconds.
    [[nodiscard]] virtual bool ask(const QString &identifier, const QString &action) = 0;
    /// The identifiers of the shortcuts that the running instance holds; nothing when none answered within two seconds.
    [[nodiscard]] virtual std::optional<QList<quint32>> heldShortcuts(const QString &identifier)
    {
        Q_UNUSED(identifier)
        return std::nullopt;
    }
};

} // namespace orvesa
