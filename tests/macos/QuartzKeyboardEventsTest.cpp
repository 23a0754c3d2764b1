#include "Platform/macos/QuartzKeyboardEvents.h"

#include "Core/KeyboardEventSender.h"
#include "Platform/KeyboardEventContract.h"
#include "macos/RecorderTest.h"
#include "macos/recorders/QuartzEvents.h"

#include <utility>

namespace orvesa {

using recorders::QuartzEvents;
using recorders::quartzEvents;
using tests::Calls;

namespace {

class QuartzKeyboardEventsTest : public tests::RecorderTest {
protected:
    QuartzKeyboardEventsTest() { quartzEvents() = {}; }

    QuartzKeyboardEvents m_keyboard;
};

} // namespace

TEST_F(QuartzKeyboardEventsTest, KeepsTheContract)
{
    const auto received = [] {
        std::vector<tests::ReceivedKey> keys;
        for (const recorders::PostedKey &key : std::exchange(quartzEvents().posted, {})) {
            keys.push_back(
                {key.keyCode, key.isDown ? KeyTransition::down : KeyTransition::up, static_cast<quint32>(key.flags)});
        }
        return keys;
    };
    tests::expectKeyboardEventContract(m_keyboard,
                                       {
                                           .hold = [](quint32 flags) { quartzEvents().flags = flags; },
                                           .received = received,
                                           .breakDown = [] { quartzEvents().events = QuartzEvents::Creation::fails; },
                                       });
}

TEST_F(QuartzKeyboardEventsTest, ReportsTheFourModifiersOfTheSession)
{
    quartzEvents().flags = 0xFFFF'FFFF'FFFF'FFFF;
    EXPECT_EQ(m_keyboard.modifierFlags(), 0x1E0000U);
    quartzEvents().flags = 0x20000100 | 0x80000;
    EXPECT_EQ(m_keyboard.modifierFlags(), 0x80000U);
    EXPECT_EQ(recorders::calls(), (Calls{"CGEventSourceFlagsState 0", "CGEventSourceFlagsState 0"}));
}

TEST_F(QuartzKeyboardEventsTest, PostsACommandStrokeWithNoOtherModifier)
{
    quartzEvents().flags = 0xA0000; // the user still holds Option and Shift
    KeyboardEventSender::sendCommandKeystroke(m_keyboard, 8);
    EXPECT_EQ(recorders::calls(),
              (Calls{"CGEventSourceCreate 0", "CGEventCreateKeyboardEvent 8 down",
                     "CGEventPost tap 0 key 8 down flags 0x100000", "CGEventSourceCreate 0",
                     "CGEventCreateKeyboardEvent 8 up", "CGEventPost tap 0 key 8 up flags 0x100000"}));
}

TEST_F(QuartzKeyboardEventsTest, PostsNothingThatCannotBeMade)
{
    quartzEvents().events = QuartzEvents::Creation::fails;
    EXPECT_FALSE(m_keyboard.post(8, KeyTransition::down, KeyboardFlags::command));
    quartzEvents().sources = QuartzEvents::Creation::fails;
    EXPECT_FALSE(m_keyboard.post(8, KeyTransition::down, KeyboardFlags::command));
    EXPECT_THAT(recorders::calls(), ::testing::Not(::testing::Contains(::testing::StartsWith("CGEventPost"))));
}

} // namespace orvesa
