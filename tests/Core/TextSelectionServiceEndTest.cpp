#include "Core/TextSelectionServiceTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The service goes while a capture waits.
class TextSelectionServiceEndTest : public TextSelectionServiceTest {
protected:
    TextSelectionServiceEndTest() { m_pasteboard.copyFromOutside(Items{m_kept}); }

    std::shared_ptr<Capture> beginOnService() { return beginOn(*m_ending); }
    void expectNothing(const std::shared_ptr<Capture> &result)
    {
        m_clock.advance(3s);
        EXPECT_TRUE(result->isOver);
        EXPECT_EQ(result->error, m_noSelectedText);
        EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
    }

    std::unique_ptr<TextSelectionService> m_ending = std::make_unique<TextSelectionService>(
        TextSelectionService::Ports{m_elements, m_trust, m_workspace, m_keyboard, m_pasteboard, m_clock});
};

TEST_F(TextSelectionServiceEndTest, pressesNoKeysAfterIt)
{
    m_keyboard.hold(KeyboardFlags::option);
    copyOnKeystroke(u"copied"_s);
    const auto result = beginOnService();
    m_clock.advance(40ms);
    m_ending.reset();
    expectNothing(result);
    EXPECT_EQ(m_pasteboard.snapshots(), 0) << "nor is the pasteboard read";
    EXPECT_THAT(m_keyboard.posted(), IsEmpty());
}

TEST_F(TextSelectionServiceEndTest, putsThePasteboardBackAtOnceWhenSomethingWasCopied)
{
    copyOnKeystroke(u"copied"_s);
    const auto result = beginOnService();
    EXPECT_EQ(m_pasteboard.text(), u"copied"_s);
    m_ending.reset();
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
    expectNothing(result);
    EXPECT_EQ(m_pasteboard.writes(), 1) << "once";
}

TEST_F(TextSelectionServiceEndTest, putsThePasteboardBackWhileTheCopiedTextIsRead)
{
    copyOnKeystroke(u"copied"_s);
    m_pasteboard.gate().close();
    const auto result = beginOnService();
    m_clock.advance(50ms);
    m_ending.reset();
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
    m_pasteboard.gate().open();
    expectNothing(result);
    EXPECT_EQ(m_pasteboard.writes(), 1) << "once";
}

TEST_F(TextSelectionServiceEndTest, leavesAPasteboardAloneThatHasNotChanged)
{
    const auto result = beginOnService();
    m_clock.advance(120ms);
    m_ending.reset();
    expectNothing(result);
    EXPECT_EQ(m_pasteboard.clears(), 0);
}

TEST_F(TextSelectionServiceEndTest, letsThoseGoThatWaitForTheirTurn)
{
    copyOnKeystroke(u"copied"_s);
    m_pasteboard.gate().close();
    const auto first = beginOnService();
    m_clock.advance(50ms);
    const auto second = beginOnService();
    m_ending.reset();
    m_pasteboard.gate().open();
    expectNothing(first);
    expectNothing(second);
    EXPECT_EQ(m_keyboard.posted().size(), 2U) << "the first one's";
}

} // namespace
} // namespace orvesa
