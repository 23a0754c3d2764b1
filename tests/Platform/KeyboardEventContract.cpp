#include "Platform/KeyboardEventContract.h"

#include <gtest/gtest.h>

namespace orvesa::tests {

namespace {

constexpr quint16 keyC = 8;
constexpr quint16 keyV = 9;

std::vector<ReceivedKey> stroke(quint16 keyCode)
{
    return {{keyCode, KeyTransition::down, KeyboardFlags::command},
            {keyCode, KeyTransition::up, KeyboardFlags::command}};
}

} // namespace

void PrintTo(const ReceivedKey &key, std::ostream *stream)
{
    *stream << (key.transition == KeyTransition::down ? "down " : "up ") << key.keyCode << " with 0x" << std::hex
            << key.flags;
}

void expectKeyboardEventContract(KeyboardEventPort &keyboard, const KeyboardBench &bench)
{
    const auto press = [&keyboard](quint16 keyCode) {
        EXPECT_TRUE(keyboard.post(keyCode, KeyTransition::down, KeyboardFlags::command));
        EXPECT_TRUE(keyboard.post(keyCode, KeyTransition::up, KeyboardFlags::command));
    };
    EXPECT_EQ(keyboard.modifierFlags(), 0U);

    // A stroke arrives once, with its own modifiers.
    press(keyC);
    EXPECT_EQ(bench.received(), stroke(keyC));
    press(keyV);
    EXPECT_EQ(bench.received(), stroke(keyV));
    EXPECT_EQ(keyboard.modifierFlags(), 0U) << "nothing stays down";

    // What the user holds is told, is no part of a stroke, and is still held after it.
    for (const quint32 held : {KeyboardFlags::option, KeyboardFlags::option | KeyboardFlags::shift,
                               KeyboardFlags::control | KeyboardFlags::shift}) {
        bench.hold(held);
        EXPECT_EQ(keyboard.modifierFlags(), held);
        (void)bench.received();
        press(keyC);
        EXPECT_EQ(bench.received(), stroke(keyC)) << "while 0x" << std::hex << held << " is held";
        EXPECT_EQ(keyboard.modifierFlags(), held);
    }
    bench.hold(0);
    EXPECT_EQ(keyboard.modifierFlags(), 0U);

    bench.breakDown();
    (void)bench.received();
    EXPECT_FALSE(keyboard.post(keyC, KeyTransition::down, KeyboardFlags::command));
    EXPECT_FALSE(keyboard.post(keyC, KeyTransition::up, KeyboardFlags::command));
    EXPECT_TRUE(bench.received().empty());
}

} // namespace orvesa::tests
