#include "Core/AccessibilityPermissionService.h"
#include "Core/ClipboardService.h"
#include "Core/KeyboardEventSender.h"
#include "fakes/Awaited.h"
#include "fakes/FakeKeyboardEvents.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Items = std::vector<PasteboardItem>;
using Snapshot = ClipboardService::Snapshot;

const PasteboardItem picture{{u"image/png"_s, {QByteArray("\x89PNG\0\1", 6), u"image/png/8"_s}},
                             {u"UTF8_STRING"_s, {"picture", u"UTF8_STRING/8"_s}}};
const PasteboardItem words{{u"text/html"_s, {"<b>words</b>", {}}}};

class ClipboardServiceTest : public ::testing::Test {
protected:
    std::optional<Snapshot> snapshot() { return awaited(m_clipboard.snapshot()); }

    FakePasteboard m_pasteboard;
    ClipboardService m_clipboard{m_pasteboard};
};

TEST_F(ClipboardServiceTest, takesAndPutsBackEveryTypeOfEveryItem)
{
    m_pasteboard.copyFromOutside(Items{picture, words});
    const auto taken = snapshot();
    ASSERT_TRUE(taken);
    EXPECT_THAT(taken->items, ElementsAre(picture, words));
    m_pasteboard.copyFromOutside(u"something else"_s);
    m_clipboard.restore(*taken);
    EXPECT_THAT(m_pasteboard.items(), ElementsAre(picture, words));
    EXPECT_EQ(m_pasteboard.clears(), 1);
    EXPECT_EQ(m_pasteboard.writes(), 1) << "all items at once";
}

TEST_F(ClipboardServiceTest, anEmptySnapshotLeavesThePasteboardEmpty)
{
    const auto taken = snapshot();
    ASSERT_TRUE(taken);
    EXPECT_THAT(taken->items, IsEmpty());
    m_pasteboard.copyFromOutside(u"the captured text"_s);
    m_clipboard.restore(*taken);
    EXPECT_THAT(m_pasteboard.items(), IsEmpty());
    EXPECT_EQ(m_pasteboard.clears(), 1);
    EXPECT_EQ(m_pasteboard.writes(), 0);
}

TEST_F(ClipboardServiceTest, keepsAnItemWithoutDataAndALaterDuplicate)
{
    m_pasteboard.copyFromOutside(Items{{}, words});
    m_pasteboard.offerWithoutData(0, u"image/tiff"_s);
    m_pasteboard.offerTwice(1, u"text/html"_s);
    const auto taken = snapshot();
    ASSERT_TRUE(taken);
    EXPECT_THAT(taken->items, ElementsAre(PasteboardItem(), words));
}

TEST_F(ClipboardServiceTest, aLaterDuplicateReplacesTheEarlierData)
{
    m_pasteboard.copyFromOutside(Items{words});
    m_pasteboard.offerTwice(0, u"text/html"_s);
    int reads = 0;
    m_pasteboard.setReadHandler([&](const QString &) {
        if (++reads == 2) {
            m_pasteboard.replaceData(0, u"text/html"_s, "later");
        }
    });
    const auto taken = snapshot();
    ASSERT_TRUE(taken);
    EXPECT_THAT(taken->items, ElementsAre(PasteboardItem{{u"text/html"_s, {"later", {}}}}));
}

TEST_F(ClipboardServiceTest, hasNothingWhenTheOwnerDoesNotHandItsContentsOver)
{
    m_pasteboard.copyFromOutside(Items{picture});
    m_pasteboard.freezeType(u"UTF8_STRING"_s);
    EXPECT_EQ(snapshot(), std::nullopt);
    m_pasteboard.freezeOwner();
    EXPECT_EQ(snapshot(), std::nullopt);
}

TEST_F(ClipboardServiceTest, readsAgainWhatChangedWhileItWasRead)
{
    m_pasteboard.copyFromOutside(Items{picture});
    int changes = 0;
    m_pasteboard.setReadHandler([&](const QString &) {
        if (++changes == 1) {
            m_pasteboard.copyFromOutside(Items{words});
        }
    });
    const auto taken = snapshot();
    ASSERT_TRUE(taken);
    EXPECT_THAT(taken->items, ElementsAre(words));
    m_pasteboard.setReadHandler([&](const QString &) { m_pasteboard.copyFromOutside(Items{words}); });
    EXPECT_EQ(snapshot(), std::nullopt) << "it never comes to rest";
}

TEST_F(ClipboardServiceTest, copiesTextAsPlainText)
{
    m_clipboard.copy(u"你好 👩‍👩‍👧‍👦"_s);
    EXPECT_EQ(m_pasteboard.text(), u"你好 👩‍👩‍👧‍👦"_s);
    EXPECT_EQ(m_pasteboard.items().size(), 1U);
}

TEST(KeyboardEventSenderTest, pressesAndReleasesWithCommandAlone)
{
    using Event = FakeKeyboardEvents::Event;
    FakeKeyboardEvents keyboard;
    keyboard.hold(KeyboardFlags::option | KeyboardFlags::shift);
    KeyboardEventSender::sendCommandKeystroke(keyboard, 8);
    EXPECT_THAT(keyboard.posted(),
                ElementsAre(Event{8, KeyTransition::down, 0x100000}, Event{8, KeyTransition::up, 0x100000}));
}

TEST(KeyboardEventSenderTest, leavesOutAnEventThatCannotBeMade)
{
    using Event = FakeKeyboardEvents::Event;
    FakeKeyboardEvents keyboard;
    keyboard.refuse(KeyTransition::down);
    KeyboardEventSender::sendCommandKeystroke(keyboard, 8);
    EXPECT_THAT(keyboard.posted(), ElementsAre(Event{8, KeyTransition::up, 0x100000}));
}

TEST(AccessibilityPermissionServiceTest, opensThePermissionPage)
{
    FakeWorkspace workspace;
    AccessibilityPermissionService::openSystemSettings(workspace);
    EXPECT_EQ(workspace.opened(),
              QList<QUrl>{QUrl(u"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"_s)});
    workspace.refuseToOpen();
    AccessibilityPermissionService::openSystemSettings(workspace);
    EXPECT_EQ(workspace.opened().size(), 2);
}

} // namespace
} // namespace orvesa
