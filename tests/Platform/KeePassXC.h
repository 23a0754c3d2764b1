#pragma once

// KeePassXC on a private desktop, as a key store: another implementation of the Secret Service than the usual one.
//
// Main thread. Its database has one group, which is the default collection, and is unlocked at first. It ends with the
// desktop.

#include "desktop/BusClient.h"
#include "desktop/Desktop.h"

namespace orvesa::tests {

class KeePassXC final {
public:
    /// What it asks its user before it answers other programs.
    enum class Questions { none, unlockBeforeSearch };

    /// Returns when it serves its unlocked database. The desktop must have no other store.
    KeePassXC(desktop::Desktop &desktop, Questions questions);

    /// Locks the database.
    void lock();

private:
    void makeDatabase();
    [[nodiscard]] bool isUnlocked();

    desktop::Desktop &m_desktop;
    desktop::BusClient m_bus;
    QString m_settings;
};

} // namespace orvesa::tests
