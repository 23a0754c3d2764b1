#include "Platform/linux/X11HotKeys.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/HotKeyContract.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// The combination by the keyboard's names, for the keys and modifiers that the contract uses.
QString combination(quint32 keyCode, quint32 modifiers)
{
    constexpr quint32 shift = 0x200;
    const QString keys[] = {u"a"_s, u"s"_s, u"d"_s};
    return ((modifiers & shift) != 0 ? u"Alt+Shift+"_s : u"Alt+"_s) + keys[keyCode];
}

} // namespace

TEST(X11HotKeyContract, IsKept)
{
    desktop::DesktopOptions options;
    options.windowManager = desktop::WindowManager::none;
    options.sessionBus = desktop::SessionBus::none;
    options.accessibility = desktop::Accessibility::none;
    options.keyStore = desktop::KeyStore::absent;
    tests::AdoptedDesktop desktop(options);
    X11Connection connection;
    X11HotKeys hotKeys(connection);
    X11Connection otherConnection;
    X11HotKeys other(otherConnection);
    const tests::HotKeyBench bench{
        .press = [&](quint32 keyCode,
                     quint32 modifiers) { desktop->keyboard().press(combination(keyCode, modifiers)); },
        // What does not come cannot be awaited.
        .deliver = [] { desktop::processEventsFor(std::chrono::milliseconds(150)); },
        .takeByAnother =
            [&](quint32 keyCode, quint32 modifiers) {
                EXPECT_EQ(other.registerHotKey(keyCode, modifiers, {}).status, HotKeyStatus::noErr);
            },
    };
    tests::expectHotKeyContract(hotKeys, bench);
}

} // namespace orvesa
