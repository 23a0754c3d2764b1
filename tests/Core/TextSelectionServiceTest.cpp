#include "Core/TextSelectionService.h"
#include "Models/AppError.h"
#include "fakes/Awaited.h"
#include "fakes/FakeAccessibilityElements.h"
#include "fakes/FakeAccessibilityTrust.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeKeyboardEvents.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Trust = FakeAccessibilityTrust::Trust;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Items = std::vector<PasteboardItem>;

const QString focusedElement = u"AXFocusedUIElement"_s;
const QString selectedText = u"AXSelectedText"_s;
constexpr qint64 process = 4711;

const PasteboardItem kept{{u"image/png"_s, {QByteArray("\x89PNG\0\1", 6), u"image/png/8"_s}},
                          {u"UTF8_STRING"_s, {"kept", u"UTF8_STRING/8"_s}}};

/// Where a capture that was begun has got to.
struct Capture {
    std::optional<QString> text;
    std::optional<AppError> error;
    bool isOver = false;
};

QCoro::Task<void> runInto(TextSelectionService &service, std::shared_ptr<Capture> capture)
{
    try {
        capture->text = co_await service.currentSelectedText();
    } catch (const AppError &error) {
        capture->error = error;
    }
    capture->isOver = true;
}

const AppError noSelectedText(AppError::Kind::noSelectedText);

class TextSelectionServiceTest : public ::testing::Test {
protected:
    TextSelectionServiceTest() { m_workspace.setFrontmostApplication(process); }

    std::shared_ptr<Capture> begin()
    {
        auto capture = std::make_shared<Capture>();
        (void)runInto(m_service, capture);
        return capture;
    }
    /// Longer than any capture takes.
    std::shared_ptr<Capture> runToEnd()
    {
        auto capture = begin();
        m_clock.advance(3s);
        EXPECT_TRUE(capture->isOver);
        return capture;
    }
    QString capture() { return runToEnd()->text.value_or(u"(failed)"_s); }
    std::optional<AppError> captureError() { return runToEnd()->error; }

    std::optional<QString> read() { return TextSelectionService::selectedTextViaAccessibility(m_elements); }

    /// The application in front has a Copy item.
    AccessibilityElement addCopyItem(bool isEnabled)
    {
        const AccessibilityElement copy =
            m_elements.makeElement({{u"AXIdentifier"_s, u"copy:"_s}, {u"AXEnabled"_s, isEnabled}});
        const auto parentOf = [&](const AccessibilityElement &child) {
            return m_elements.makeElement({{u"AXChildren"_s, std::vector{child}}});
        };
        m_elements.setApplication(process, m_elements.makeElement({{u"AXMenuBar"_s, parentOf(parentOf(copy))}}));
        return copy;
    }
    /// The copy keystroke copies.
    void copyOnKeystroke(const QString &text)
    {
        m_keyboard.setPostHandler([this, text](const FakeKeyboardEvents::Event &event) {
            if (event.transition == KeyTransition::down) {
                m_pasteboard.copyFromOutside(text);
            }
        });
    }

    FakeAccessibilityElements m_elements;
    FakeAccessibilityTrust m_trust;
    FakeWorkspace m_workspace;
    FakeKeyboardEvents m_keyboard;
    FakePasteboard m_pasteboard;
    FakeClock m_clock;
    TextSelectionService m_service{{m_elements, m_trust, m_workspace, m_keyboard, m_pasteboard, m_clock}};
};

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

TEST_F(TextSelectionServiceTest, aDisabledCopyItemMeansThatNothingIsSelected)
{
    addCopyItem(false);
    const auto result = begin();
    EXPECT_EQ(result->error, noSelectedText) << "at once";
    EXPECT_EQ(m_pasteboard.snapshots(), 0);
    EXPECT_EQ(m_pasteboard.clears(), 0);
    EXPECT_THAT(m_keyboard.posted(), IsEmpty());
    EXPECT_THAT(m_elements.actions(), IsEmpty());
}

TEST_F(TextSelectionServiceTest, invokesTheCopyItemAndPutsThePasteboardBack)
{
    const AccessibilityElement copy = addCopyItem(true);
    m_pasteboard.copyFromOutside(Items{kept});
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
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
    EXPECT_THAT(m_keyboard.posted(), IsEmpty());
    EXPECT_EQ(m_keyboard.questions(), 0) << "no keystroke, no wait for the keys";
}

TEST_F(TextSelectionServiceTest, pressesCommandAndCWhereThereIsNoCopyItem)
{
    using Event = FakeKeyboardEvents::Event;
    m_pasteboard.copyFromOutside(Items{kept});
    copyOnKeystroke(u" copied "_s);
    EXPECT_EQ(capture(), u" copied "_s);
    EXPECT_THAT(m_keyboard.posted(),
                ElementsAre(Event{8, KeyTransition::down, 0x100000}, Event{8, KeyTransition::up, 0x100000}));
    EXPECT_THAT(m_clock.requestedSleeps(), ElementsAre(50ms)) << "no key was held";
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
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
    m_pasteboard.copyFromOutside(Items{kept});
    const auto result = begin();
    m_clock.advance(999ms);
    EXPECT_FALSE(result->isOver);
    m_clock.advance(1ms);
    EXPECT_EQ(result->error, noSelectedText);
    EXPECT_EQ(m_clock.requestedSleeps().size(), 20U);
    EXPECT_THAT(m_clock.requestedSleeps(), Each(50ms));
    EXPECT_EQ(m_pasteboard.clears(), 0) << "it was never changed";
    EXPECT_EQ(m_pasteboard.writes(), 0);
}

TEST_F(TextSelectionServiceTest, takesACopyThatComesLate)
{
    m_pasteboard.copyFromOutside(Items{kept});
    const auto result = begin();
    m_clock.advance(999ms);
    m_pasteboard.copyFromOutside(u"late"_s);
    m_clock.advance(1ms);
    EXPECT_EQ(result->text, u"late"_s);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
}

TEST_F(TextSelectionServiceTest, putsThePasteboardBackBeforeItLooksAtTheText)
{
    for (const QString &blank : {u""_s, u" \n\t"_s}) {
        m_pasteboard.copyFromOutside(Items{kept});
        copyOnKeystroke(blank);
        EXPECT_EQ(captureError(), noSelectedText);
        EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
    }
    m_keyboard.setPostHandler([this](const auto &) {
        m_pasteboard.copyFromOutside(Items{{{u"image/png"_s, {"picture", {}}}}});
    });
    EXPECT_EQ(captureError(), noSelectedText) << "no plain text";
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
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
    m_pasteboard.copyFromOutside(Items{kept});
    m_pasteboard.freezeOwner();
    copyOnKeystroke(u"copied"_s);
    EXPECT_EQ(captureError(), noSelectedText);
    EXPECT_THAT(m_keyboard.posted(), IsEmpty());
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
}

TEST_F(TextSelectionServiceTest, capturesOneAfterAnother)
{
    m_pasteboard.copyFromOutside(Items{kept});
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
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
}

TEST_F(TextSelectionServiceTest, aFailedCaptureLetsTheNextOneBegin)
{
    const auto first = begin();
    const auto second = begin();
    m_clock.advance(1s);
    EXPECT_EQ(first->error, noSelectedText);
    copyOnKeystroke(u"ignored"_s);
    m_pasteboard.copyFromOutside(u"late"_s);
    m_clock.advance(50ms);
    EXPECT_EQ(second->text, u"late"_s);
}

TEST_F(TextSelectionServiceTest, takesWhatAnotherProgramCopiesMeanwhileForTheCopy)
{
    m_pasteboard.copyFromOutside(Items{kept});
    const auto result = begin();
    m_clock.advance(120ms);
    m_pasteboard.copyFromOutside(u"of another program"_s);
    m_clock.advance(30ms);
    EXPECT_EQ(result->text, u"of another program"_s);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept)) << "and puts back what was there before";
}

TEST_F(TextSelectionServiceTest, aPasteboardThatIsEmptiedMeanwhileIsFilledAgain)
{
    m_pasteboard.copyFromOutside(Items{kept});
    m_keyboard.setPostHandler([this](const auto &) { m_pasteboard.copyFromOutside(Items{}); });
    EXPECT_EQ(captureError(), noSelectedText);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept)) << "its owner has gone";
}

TEST_F(TextSelectionServiceTest, waitsForACopyInVainWhenNoKeyCanBePressed)
{
    m_pasteboard.copyFromOutside(Items{kept});
    m_keyboard.refuse(KeyTransition::down);
    m_keyboard.refuse(KeyTransition::up);
    EXPECT_EQ(captureError(), noSelectedText);
    EXPECT_EQ(m_clock.requestedSleeps().size(), 20U);
    EXPECT_EQ(m_pasteboard.clears(), 0);
}

TEST_F(TextSelectionServiceTest, waitsForACopyInVainWhenThePressOfTheItemFails)
{
    addCopyItem(true);
    m_pasteboard.copyFromOutside(Items{kept});
    m_elements.setActionHandler([](const auto &) { return false; });
    EXPECT_EQ(captureError(), noSelectedText);
    EXPECT_EQ(m_clock.requestedSleeps().size(), 20U);
    EXPECT_THAT(m_keyboard.posted(), IsEmpty()) << "one way, not both";
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
    EXPECT_EQ(m_pasteboard.clears(), 0);
}

TEST_F(TextSelectionServiceTest, pressesKeysWhereThereIsNoApplicationInFront)
{
    m_workspace.setFrontmostApplication(std::nullopt);
    copyOnKeystroke(u"copied"_s);
    EXPECT_EQ(capture(), u"copied"_s);
}

TEST_F(TextSelectionServiceTest, keepsSeveralItemsAndEmptyOnes)
{
    const PasteboardItem words{{u"text/html"_s, {"<b>words</b>", {}}}};
    m_pasteboard.copyFromOutside(Items{kept, {}, words});
    copyOnKeystroke(u"copied"_s);
    EXPECT_EQ(capture(), u"copied"_s);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept, PasteboardItem(), words));
    EXPECT_EQ(m_pasteboard.writes(), 1);
}

/// The service goes while a capture waits.
class TextSelectionServiceEndTest : public TextSelectionServiceTest {
protected:
    TextSelectionServiceEndTest() { m_pasteboard.copyFromOutside(Items{kept}); }

    std::shared_ptr<Capture> beginOnService()
    {
        auto result = std::make_shared<Capture>();
        (void)runInto(*m_ending, result);
        return result;
    }
    void expectNothing(const std::shared_ptr<Capture> &result)
    {
        m_clock.advance(3s);
        EXPECT_TRUE(result->isOver);
        EXPECT_EQ(result->error, noSelectedText);
        EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
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
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
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
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(kept));
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
