#include "Platform/macos/CarbonHotKeys.h"

#include "Core/HotKeyError.h"
#include "Core/HotKeyService.h"
#include "Platform/HotKeyContract.h"
#include "macos/RecorderTest.h"
#include "macos/recorders/CarbonEvents.h"

namespace orvesa {

using namespace Qt::StringLiterals;
using tests::Calls;

namespace {

constexpr quint32 keyD = 2;
constexpr quint32 option = 0x800;

class CarbonHotKeysTest : public tests::RecorderTest {
protected:
    recorders::CarbonEvents m_carbon;
};

} // namespace

TEST_F(CarbonHotKeysTest, KeepsTheContract)
{
    CarbonHotKeys hotKeys;
    tests::expectHotKeyContract(
        hotKeys,
        {
            .press = [this](quint32 keyCode, quint32 modifiers) { (void)m_carbon.press(keyCode, modifiers); },
            .deliver = [] {},
            .takeByAnother = [this](quint32 keyCode, quint32 modifiers) { m_carbon.takeByAnother(keyCode, modifiers); },
        });
    EXPECT_EQ(m_carbon.registrations(), 0);
    EXPECT_EQ(m_carbon.handlers(), 0);
}

TEST_F(CarbonHotKeysTest, MakesTheServicesCallsInTheirOrder)
{
    CarbonHotKeys hotKeys;
    int presses = 0;
    {
        HotKeyService service(hotKeys);
        service.registerHotKey(1, KeyCombo{keyD, option, u"D"_s}, [&presses] { ++presses; });
        service.registerHotKey(1, KeyCombo{keyD, option | 0x100, u"D"_s}, [&presses] { presses += 10; });
        EXPECT_EQ(m_carbon.press(keyD, option), std::nullopt) << "replaced";
        EXPECT_EQ(m_carbon.press(keyD, option | 0x100), noErr);
    }
    EXPECT_EQ(presses, 10);
    EXPECT_EQ(recorders::calls(),
              (Calls{"InstallEventHandler 'keyb' 5", "RegisterEventHotKey key 2 modifiers 0x800 'KVHK' 1 options 0",
                     "UnregisterEventHotKey 1", "RegisterEventHotKey key 2 modifiers 0x900 'KVHK' 1 options 0",
                     "GetEventParameter '----' 'hkid' 8 bytes", "UnregisterEventHotKey 1", "RemoveEventHandler"}));
}

TEST_F(CarbonHotKeysTest, PassesStatusesOn)
{
    CarbonHotKeys hotKeys;
    m_carbon.installStatus = -50;
    EXPECT_EQ(hotKeys.installHandler([](HotKeyID) { return HotKeyStatus::noErr; }), -50);
    m_carbon.installStatus = noErr;
    EXPECT_EQ(hotKeys.installHandler([](HotKeyID) { return qint32{-7}; }), noErr);
    EXPECT_EQ(m_carbon.send({0x4B56484B, 1}), -7);
    m_carbon.parameterStatus = -9871;
    EXPECT_EQ(m_carbon.send({0x4B56484B, 1}), -9871);
    m_carbon.parameterStatus = noErr;
    EXPECT_EQ(m_carbon.sendEmpty(), -9870);
    EXPECT_EQ(m_carbon.sendWithoutUserData(), eventNotHandledErr);
}

TEST_F(CarbonHotKeysTest, SwallowsAnUnknownIdentifierThroughTheService)
{
    CarbonHotKeys hotKeys;
    HotKeyService service(hotKeys);
    service.registerHotKey(1, KeyCombo{keyD, option, u"D"_s}, [] {});
    EXPECT_EQ(m_carbon.send({0x4B56484B, 77}), noErr);
    service.unregisterAll();
    EXPECT_EQ(m_carbon.send({0x4B56484B, 1}), noErr);
}

TEST_F(CarbonHotKeysTest, RefusalsReachTheServicesCaller)
{
    CarbonHotKeys hotKeys;
    HotKeyService service(hotKeys);
    m_carbon.takeByAnother(keyD, option);
    try {
        service.registerHotKey(1, KeyCombo{keyD, option, u"D"_s}, [] {});
        ADD_FAILURE() << "nothing was thrown";
    } catch (const HotKeyError &error) {
        EXPECT_EQ(error.errorDescription(), u"Failed to register global hotkey (status: -9878)"_s);
    }
}

} // namespace orvesa
