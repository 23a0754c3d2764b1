#include "Core/TextSelectionServiceTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(TextSelectionServiceTest, putsThePasteboardBackBeforeItLooksAtTheText)
{
    for (const QString &blank : {u""_s, u" \n\t"_s}) {
        m_pasteboard.copyFromOutside(Items{m_kept});
        copyOnKeystroke(blank);
        EXPECT_EQ(captureError(), m_noSelectedText);
        EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
    }
    m_keyboard.setPostHandler([this](const auto &) {
        m_pasteboard.copyFromOutside(Items{{{u"image/png"_s, {"picture", {}}}}});
    });
    EXPECT_EQ(captureError(), m_noSelectedText) << "no plain text";
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
}

TEST_F(TextSelectionServiceTest, leavesAnEmptyPasteboardEmpty)
{
    copyOnKeystroke(u"copied"_s);
    EXPECT_EQ(capture(), u"copied"_s);
    EXPECT_THAT(m_pasteboard.items(), IsEmpty());
    EXPECT_EQ(m_pasteboard.writes(), 0);
}

TEST_F(TextSelectionServiceTest, risksNoContentsThatItCouldNotPutBack)
{
    m_pasteboard.copyFromOutside(Items{m_kept});
    m_pasteboard.freezeOwner();
    copyOnKeystroke(u"copied"_s);
    EXPECT_EQ(captureError(), m_noSelectedText);
    EXPECT_THAT(m_keyboard.posted(), IsEmpty());
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept));
}

TEST_F(TextSelectionServiceTest, takesWhatAnotherProgramCopiesMeanwhileForTheCopy)
{
    m_pasteboard.copyFromOutside(Items{m_kept});
    const auto result = begin();
    m_clock.advance(120ms);
    m_pasteboard.copyFromOutside(u"of another program"_s);
    m_clock.advance(30ms);
    EXPECT_EQ(result->text, u"of another program"_s);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept)) << "and puts back what was there before";
}

TEST_F(TextSelectionServiceTest, aPasteboardThatIsEmptiedMeanwhileIsFilledAgain)
{
    m_pasteboard.copyFromOutside(Items{m_kept});
    m_keyboard.setPostHandler([this](const auto &) { m_pasteboard.copyFromOutside(Items{}); });
    EXPECT_EQ(captureError(), m_noSelectedText);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept)) << "its owner has gone";
}

TEST_F(TextSelectionServiceTest, keepsSeveralItemsAndEmptyOnes)
{
    const PasteboardItem words{{u"text/html"_s, {"<b>words</b>", {}}}};
    m_pasteboard.copyFromOutside(Items{m_kept, {}, words});
    copyOnKeystroke(u"copied"_s);
    EXPECT_EQ(capture(), u"copied"_s);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(m_kept, PasteboardItem(), words));
    EXPECT_EQ(m_pasteboard.writes(), 1);
}

TEST_F(TextSelectionServiceTest, leavesOutTheCapturesThatWereStoppedWhileTheyWaited)
{
    std::stop_source stopped;
    const auto first = begin(stopped.get_token());
    const auto second = begin(stopped.get_token());
    const auto third = begin();
    stopped.request_stop();
    m_clock.advance(1s);
    EXPECT_EQ(first->error, m_noSelectedText) << "it had begun";
    EXPECT_TRUE(second->isOver);
    EXPECT_EQ(second->text, QString());
    EXPECT_FALSE(third->isOver);
    copyOnKeystroke(u"copied"_s);
    m_pasteboard.copyFromOutside(u"copied"_s);
    m_clock.advance(1s);
    EXPECT_EQ(third->text, u"copied"_s);
    EXPECT_EQ(m_keyboard.posted().size(), 4U) << "two strokes";
}

TEST_F(TextSelectionServiceTest, survivesAnyNumberOfCapturesThatWereStopped)
{
    constexpr int count = 100'000;
    std::stop_source stopped;
    std::vector<std::shared_ptr<Capture>> captures;
    for (int index = 0; index < count; ++index) {
        captures.push_back(begin(stopped.get_token()));
    }
    stopped.request_stop();
    m_clock.advance(1s);
    EXPECT_TRUE(std::ranges::all_of(captures, &Capture::isOver));
    EXPECT_EQ(m_keyboard.posted().size(), 2U);
}

} // namespace
} // namespace orvesa
