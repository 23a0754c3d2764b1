#include "Core/TextSelectionServiceTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using Trust = FakeAccessibilityTrust::Trust;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString focusedElement = u"AXFocusedUIElement"_s;
const QString selectedText = u"AXSelectedText"_s;

TEST_F(TextSelectionServiceTest, returnsTheSelectionWithItsBlanks)
{
    m_elements.focusSelectedText(u" \n word  "_s);
    EXPECT_EQ(capture(), u" \n word  "_s);
    EXPECT_THAT(m_elements.reads(), ElementsAre(focusedElement, selectedText));
    EXPECT_THAT(m_elements.actions(), IsEmpty());
    EXPECT_EQ(m_pasteboard.snapshots(), 0);
    EXPECT_THAT(m_keyboard.posted(), IsEmpty());
}

TEST_F(TextSelectionServiceTest, readsBeforeItAsksForTrust)
{
    m_trust.setTrust(Trust::missing);
    m_elements.focusSelectedText(u"word"_s);
    EXPECT_EQ(capture(), u"word"_s);
    EXPECT_EQ(m_trust.questions(), 0);
}

TEST_F(TextSelectionServiceTest, isDeniedWhenNothingCameAndTrustIsMissing)
{
    m_trust.setTrust(Trust::missing);
    EXPECT_EQ(captureError(), AppError(AppError::Kind::accessibilityPermissionDenied));
    EXPECT_THAT(m_elements.reads(), ElementsAre(focusedElement));
    EXPECT_EQ(m_trust.requests(), 0);
    EXPECT_THAT(m_keyboard.posted(), IsEmpty());
    EXPECT_EQ(m_pasteboard.snapshots(), 0);
    m_elements.focusSelectedText(u" \n"_s);
    EXPECT_EQ(captureError(), AppError(AppError::Kind::accessibilityPermissionDenied));
}

TEST_F(TextSelectionServiceTest, goesOnToTheCopyWhenTheTextIsBlankOrEmpty)
{
    copyOnKeystroke(u"copied"_s);
    for (const QString &blank : {u""_s, u"  \n"_s, u"\u3000\u2028\t"_s}) {
        m_elements.focusSelectedText(blank);
        EXPECT_EQ(capture(), u"copied"_s);
    }
}

TEST_F(TextSelectionServiceTest, startsEveryCaptureFromScratch)
{
    m_elements.focusSelectedText(u"one"_s);
    EXPECT_EQ(capture(), u"one"_s);
    m_elements.focusSelectedText(u"two"_s);
    EXPECT_EQ(capture(), u"two"_s);
}

TEST_F(TextSelectionServiceTest, readsAnEmptyTextAsText)
{
    m_elements.focusSelectedText(QString());
    EXPECT_EQ(read(), QString());
}

TEST_F(TextSelectionServiceTest, readsNothingWhenTheFocusIsNoElement)
{
    for (const AccessibilityValue &value :
         {AccessibilityValue(u"text"_s), AccessibilityValue(true), AccessibilityValue(qint64{4}),
          AccessibilityValue(std::vector{m_elements.makeElement()}), AccessibilityValue(AccessibilityElement())}) {
        m_elements.setAttribute(m_elements.systemWide(), focusedElement, value);
        EXPECT_EQ(read(), std::nullopt);
    }
    EXPECT_THAT(m_elements.reads(),
                ElementsAre(focusedElement, focusedElement, focusedElement, focusedElement, focusedElement));
}

TEST_F(TextSelectionServiceTest, readsNothingWhenTheSelectionIsNoText)
{
    const AccessibilityElement focused = m_elements.makeElement();
    m_elements.setAttribute(m_elements.systemWide(), focusedElement, focused);
    EXPECT_EQ(read(), std::nullopt);
    for (const AccessibilityValue &value :
         {AccessibilityValue(true), AccessibilityValue(qint64{4}), AccessibilityValue(focused)}) {
        m_elements.setAttribute(focused, selectedText, value);
        EXPECT_EQ(read(), std::nullopt);
    }
}

} // namespace
} // namespace orvesa
