#include "Platform/HotKeyContract.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvesa::tests {

namespace {

constexpr quint32 keyA = 0;
constexpr quint32 keyS = 1;
constexpr quint32 keyD = 2;
constexpr quint32 option = 0x800;
constexpr quint32 shift = 0x200;
constexpr quint32 signature = 0x4B56484B;

} // namespace

void expectHotKeyContract(HotKeyPort &hotKeys, const HotKeyBench &bench)
{
    std::vector<quint32> pressed;
    const auto press = [&](quint32 keyCode, quint32 modifiers) {
        pressed.clear();
        bench.press(keyCode, modifiers);
        bench.deliver();
        return pressed;
    };
    const auto note = [&pressed](HotKeyID id) {
        EXPECT_EQ(id.signature, signature);
        pressed.push_back(id.id);
        return HotKeyStatus::noErr;
    };
    ASSERT_EQ(hotKeys.installHandler(note), HotKeyStatus::noErr);

    // Each press comes once, with the identifier of its own registration.
    const HotKeyRegistration translate = hotKeys.registerHotKey(keyD, option, {signature, 1});
    const HotKeyRegistration polish = hotKeys.registerHotKey(keyS, option, {signature, 1000});
    EXPECT_EQ(translate.status, HotKeyStatus::noErr);
    EXPECT_EQ(polish.status, HotKeyStatus::noErr);
    EXPECT_NE(translate.reference, 0U);
    EXPECT_NE(translate.reference, polish.reference);
    EXPECT_EQ(press(keyD, option), (std::vector<quint32>{1}));
    EXPECT_EQ(press(keyS, option), (std::vector<quint32>{1000}));
    EXPECT_EQ(press(keyD, option | shift), (std::vector<quint32>{}));

    // What is taken is refused, and whoever has it keeps it.
    const HotKeyRegistration again = hotKeys.registerHotKey(keyD, option, {signature, 2});
    EXPECT_EQ(again.status, HotKeyStatus::hotKeyExists);
    EXPECT_EQ(again.reference, 0U);
    bench.takeByAnother(keyA, option);
    const HotKeyRegistration another = hotKeys.registerHotKey(keyA, option, {signature, 3});
    EXPECT_EQ(another.status, HotKeyStatus::hotKeyExists);
    EXPECT_EQ(another.reference, 0U);
    EXPECT_EQ(press(keyD, option), (std::vector<quint32>{1}));

    // What was given back is free again.
    EXPECT_EQ(hotKeys.unregisterHotKey(translate.reference), HotKeyStatus::noErr);
    EXPECT_NE(hotKeys.unregisterHotKey(translate.reference), HotKeyStatus::noErr);
    EXPECT_EQ(press(keyD, option), (std::vector<quint32>{}));
    const HotKeyRegistration anew = hotKeys.registerHotKey(keyD, option, {signature, 4});
    EXPECT_EQ(anew.status, HotKeyStatus::noErr);
    EXPECT_EQ(press(keyD, option), (std::vector<quint32>{4}));

    // Without a handler a press is nobody's.
    hotKeys.removeHandler();
    EXPECT_EQ(press(keyD, option), (std::vector<quint32>{}));
    EXPECT_EQ(hotKeys.unregisterHotKey(anew.reference), HotKeyStatus::noErr);
    EXPECT_EQ(hotKeys.unregisterHotKey(polish.reference), HotKeyStatus::noErr);
}

} // namespace orvesa::tests
