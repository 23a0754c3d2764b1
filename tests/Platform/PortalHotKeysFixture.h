#pragma once

// A desktop with a bus and the fake portal for global shortcuts, and what the hot keys under test do and say there.
//
// Main thread. The log is taken in while the fixture lives.

#include "Platform/AdoptedDesktop.h"
#include "Platform/ModifierBits.h"
#include "Platform/linux/PortalHotKeys.h"
#include "Platform/linux/X11Connection.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QStringList>
#include <QtGlobal>

#include <vector>

namespace orvesa::tests {

class PortalHotKeysFixture : public ::testing::Test {
protected:
    static constexpr quint32 keyD = 2;
    static constexpr quint32 keyS = 1;
    static constexpr quint32 option = CarbonModifier::option;
    static constexpr quint32 shift = CarbonModifier::shift;
    static constexpr quint32 signature = 0x4B56484B;

    PortalHotKeysFixture();
    ~PortalHotKeysFixture() override;

    /// With an order that it obeys before anything is asked of it.
    desktop::Process &startPortal(const QByteArray &order = {});
    /// Another portal in place of one that was killed, once that is known to have gone.
    desktop::Process &startPortalAfterLoss();
    void listenTo(PortalHotKeys &hotKeys);
    /// Option and the key, under an identifier.
    HotKeyRegistration registerKey(PortalHotKeys &hotKeys, quint32 key, quint32 id);
    static void expectBound(desktop::Process &portal, const QByteArray &shortcuts);
    /// A portal where Option-D of m_hotKeys is bound as number 1.
    desktop::Process &startPortalWithOneBound();
    /// After the portal's loss: what is registered is bound there, and works.
    void expectBoundAt(desktop::Process &portal, const QByteArray &shortcuts);
    /// Has the desktop say that a shortcut was pressed, and waits for it.
    void press(desktop::Process &portal, const QByteArray &shortcut);

    AdoptedDesktop m_desktop;
    QStringList m_log;
    std::vector<quint32> m_pressed;
    X11Connection m_x11;
    PortalHotKeys m_hotKeys{m_x11}; ///< listened to

private:
    QtMessageHandler m_earlier = nullptr;
};

} // namespace orvesa::tests
