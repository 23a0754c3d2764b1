#include "Core/TextSelectionServiceTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(TextSelectionServiceTest, aDisabledCopyItemMeansThatNothingIsSelected)
{
    addCopyItem(false);
    const auto result = begin();
    EXPECT_EQ(result->error, m_noSelectedText) << "at once";
    EXPECT_EQ(m_pasteboard.snapshots(), 0);
    EXPECT_EQ(m_pasteboard.clears(), 0);
    EXPECT_THAT(m_keyboard.posted(), IsEmpty());
    EXPECT_THAT(m_elements.actions(), IsEmpty());
}

TEST_F(TextSelectionServiceTest, invokesTheCopyItemAndPutsThePasteboardBack)
{
    const AccessibilityElement copy = addCopyItem(true);
    m_pasteboard.copyFromOutside(Items{m_kept});
    m_elements.setActionHandler([&](const auto &) {
        m_pasteboard.copyFromOutside(u"  copied\n"_s);
        return false; // what it answers does not matter
    });
    m_keyboard.hold(KeyboardFlags::option);
    const auto result = begin();
    EXPECT_THAT(m_elements.actions(), ElementsAre(FakeAccessibilityElements::Action{copy, u"AXPress"_s}));
    EXPECT_FALSE(result->isOver);
    m_clock.advance(49ms);
    EXPECT_FALSE(result->isOver);
    EXPECT_EQ(m_pasteboard.text(), u"  copied\n"_s);
    m_clock.advance(1ms);
    EXPECT_EQ(result->text, u"  copied\n"_s);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
    EXPECT_THAT(m_keyboard.posted(), IsEmpty());
    EXPECT_EQ(m_keyboard.questions(), 0) << "no keystroke, no wait for the keys";
}

TEST_F(TextSelectionServiceTest, pressesCommandAndCWhereThereIsNoCopyItem)
{
    using Event = FakeKeyboardEvents::Event;
    m_pasteboard.copyFromOutside(Items{m_kept});
    copyOnKeystroke(u" copied "_s);
    EXPECT_EQ(capture(), u" copied "_s);
    EXPECT_THAT(m_keyboard.posted(),
                ElementsAre(Event{8, KeyTransition::down, 0x100000}, Event{8, KeyTransition::up, 0x100000}));
    EXPECT_THAT(m_clock.requestedSleeps(), ElementsAre(50ms)) << "no key was held";
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
}

TEST_F(TextSelectionServiceTest, pressesNoKeysBeforeTheShortcutsOwnAreUp)
{
    for (const quint32 flag :
         {KeyboardFlags::shift, KeyboardFlags::control, KeyboardFlags::option, KeyboardFlags::command}) {
        const std::size_t before = m_keyboard.posted().size();
        m_keyboard.hold(flag);
        copyOnKeystroke(u"copied"_s);
        const auto result = begin();
        m_clock.advance(399ms);
        EXPECT_EQ(m_keyboard.posted().size(), before);
        m_keyboard.hold(0x10000); // Caps Lock is none of them
        m_clock.advance(1ms);
        EXPECT_EQ(m_keyboard.posted().size(), before + 2);
        m_clock.advance(50ms);
        EXPECT_EQ(result->text, u"copied"_s);
    }
}

TEST_F(TextSelectionServiceTest, pressesThemAfterASecondAllTheSame)
{
    m_keyboard.hold(KeyboardFlags::command);
    copyOnKeystroke(u"copied"_s);
    const auto result = begin();
    m_clock.advance(999ms);
    EXPECT_THAT(m_keyboard.posted(), IsEmpty());
    m_clock.advance(1ms);
    EXPECT_EQ(m_keyboard.posted().size(), 2U);
    EXPECT_EQ(m_clock.requestedSleeps().size(), 51U) << "fifty rounds of 20 ms, then the first look";
    EXPECT_EQ(m_clock.requestedSleeps().front(), 20ms);
    m_clock.advance(50ms);
    EXPECT_EQ(result->text, u"copied"_s);
}

TEST_F(TextSelectionServiceTest, looksTwentyTimesForTheCopy)
{
    m_pasteboard.copyFromOutside(Items{m_kept});
    const auto result = begin();
    m_clock.advance(999ms);
    EXPECT_FALSE(result->isOver);
    m_clock.advance(1ms);
    EXPECT_EQ(result->error, m_noSelectedText);
    EXPECT_EQ(m_clock.requestedSleeps().size(), 20U);
    EXPECT_THAT(m_clock.requestedSleeps(), Each(50ms));
    EXPECT_EQ(m_pasteboard.clears(), 0) << "it was never changed";
    EXPECT_EQ(m_pasteboard.writes(), 0);
}

TEST_F(TextSelectionServiceTest, takesACopyThatComesLate)
{
    m_pasteboard.copyFromOutside(Items{m_kept});
    const auto result = begin();
    m_clock.advance(999ms);
    m_pasteboard.copyFromOutside(u"late"_s);
    m_clock.advance(1ms);
    EXPECT_EQ(result->text, u"late"_s);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
}

TEST_F(TextSelectionServiceTest, capturesOneAfterAnother)
{
    m_pasteboard.copyFromOutside(Items{m_kept});
    copyOnKeystroke(u"copied"_s);
    m_pasteboard.gate().close();
    const auto first = begin();
    m_clock.advance(50ms);
    const auto second = begin();
    EXPECT_EQ(m_pasteboard.snapshots(), 1) << "what is on the pasteboard now is the first one's";
    EXPECT_EQ(m_keyboard.posted().size(), 2U);
    m_pasteboard.gate().open();
    EXPECT_EQ(first->text, u"copied"_s);
    EXPECT_EQ(m_pasteboard.snapshots(), 2);
    m_clock.advance(50ms);
    EXPECT_EQ(second->text, u"copied"_s);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
}

TEST_F(TextSelectionServiceTest, aFailedCaptureLetsTheNextOneBegin)
{
    const auto first = begin();
    const auto second = begin();
    m_clock.advance(1s);
    EXPECT_EQ(first->error, m_noSelectedText);
    copyOnKeystroke(u"ignored"_s);
    m_pasteboard.copyFromOutside(u"late"_s);
    m_clock.advance(50ms);
    EXPECT_EQ(second->text, u"late"_s);
}

TEST_F(TextSelectionServiceTest, waitsForACopyInVainWhenNoKeyCanBePressed)
{
    m_pasteboard.copyFromOutside(Items{m_kept});
    m_keyboard.refuse(KeyTransition::down);
    m_keyboard.refuse(KeyTransition::up);
    EXPECT_EQ(captureError(), m_noSelectedText);
    EXPECT_EQ(m_clock.requestedSleeps().size(), 20U);
    EXPECT_EQ(m_pasteboard.clears(), 0);
}

TEST_F(TextSelectionServiceTest, waitsForACopyInVainWhenThePressOfTheItemFails)
{
    addCopyItem(true);
    m_pasteboard.copyFromOutside(Items{m_kept});
    m_elements.setActionHandler([](const auto &) { return false; });
    EXPECT_EQ(captureError(), m_noSelectedText);
    EXPECT_EQ(m_clock.requestedSleeps().size(), 20U);
    EXPECT_THAT(m_keyboard.posted(), IsEmpty()) << "one way, not both";
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
    EXPECT_EQ(m_pasteboard.clears(), 0);
}

TEST_F(TextSelectionServiceTest, pressesKeysWhereThereIsNoApplicationInFront)
{
    m_workspace.setFrontmostApplication(std::nullopt);
    copyOnKeystroke(u"copied"_s);
    EXPECT_EQ(capture(), u"copied"_s);
}

} // namespace
} // namespace orvesa
