#pragma once

// The stand-in for the Security framework's keychain items. Any thread.

#include <Security/Security.h>

#include <QByteArray>
#include <QString>

#include <map>
#include <mutex>
#include <optional>
#include <semaphore>

namespace orvesa::recorders {

/// One at a time.
class Keychain final {
public:
    using Identity = std::pair<QString, QString>; ///< service, account

    Keychain();
    ~Keychain();
    Keychain(const Keychain &) = delete;
    Keychain &operator=(const Keychain &) = delete;

    void setItem(const Identity &identity, const QByteArray &data);
    [[nodiscard]] std::optional<QByteArray> item(const Identity &identity);
    /// Every later call ends with the status; no value restores ordinary behaviour.
    void setStatus(std::optional<OSStatus> status);
    /// Later calls wait, as for the user's answer to a prompt, until let().
    void hold();
    void let();

    struct State;

private:
    State &m_state;
};

} // namespace orvesa::recorders
