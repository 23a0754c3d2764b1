#pragma once

// A desktop with a bus and the fake portal for global shortcuts, and what the hot keys under test do and say there.
//
// Main thread. The log is taken in while the fixture lives.

#include "Platform/AdoptedDesktop.h"
#include "Platform/ModifierBits.h"
#include "Platform/linux/PortalHotKeys.h"

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

    desktop::Process &startPortal();
    /// Another portal in place of one that was killed, once that is known to have gone.
    desktop::Process &startPortalAfterLoss();
    void listenTo(PortalHotKeys &hotKeys);
    /// After the portal's loss: what is registered is bound there, and works.
    void expectBoundAt(desktop::Process &portal, const QByteArray &binding);

    AdoptedDesktop m_desktop;
    QStringList m_log;
    std::vector<quint32> m_pressed;

private:
    QtMessageHandler m_earlier = nullptr;
};

} // namespace orvesa::tests
