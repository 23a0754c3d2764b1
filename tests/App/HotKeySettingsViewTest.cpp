// The page for shortcuts, over fakes.

#include "App/SettingsViewFixture.h"

#include "UI/HotKeyRecorderView.h"
#include "UI/SymbolButton.h"

#include <QMainWindow>
#include <QTest>

using namespace Qt::StringLiterals;

namespace orvesa {

TEST_F(SettingsViewTest, RecordingShowsInTheRowAndTheResetButtonBringsTheDefaultBack)
{
    open(SettingsSection::shortcuts);
    const auto recorders = view().findChildren<HotKeyRecorderView *>();
    ASSERT_EQ(recorders.size(), 3);
    recorders[0]->click();
    keyMonitor.press(17, FakeKeyMonitor::command | FakeKeyMonitor::shift, u"T"_s);
    EXPECT_EQ(recorders[0]->shownText(), u"⇧⌘T"_s);
    auto *reset = named<SymbolButton>(u"Reset to default (⌥D)"_s);
    ASSERT_NE(reset, nullptr);
    EXPECT_EQ(reset->toolTip(), u"Reset to default (⌥D)"_s);
    reset->click();
    EXPECT_EQ(recorders[0]->shownText(), u"⌥D"_s);
    EXPECT_FALSE(settings.isCustomized(HotKeyAction::translateSelection));
}

TEST_F(SettingsViewTest, ARefusedShortcutIsExplainedUnderTheRows)
{
    open(SettingsSection::shortcuts);
    const auto recorders = view().findChildren<HotKeyRecorderView *>();
    recorders[0]->click();
    keyMonitor.press(1, FakeKeyMonitor::option, u"s"_s);
    EXPECT_TRUE(shownTexts().contains(u"⌥S is already used by another action."_s));
    EXPECT_EQ(settings.combo(HotKeyAction::translateSelection).displayText(), u"⌥D"_s);
    keyMonitor.press(17, 0, u"t"_s);
    EXPECT_TRUE(shownTexts().contains(u"Shortcuts must include ⌘, ⌥ or ⌃ (function keys excepted)."_s));
    keyMonitor.press(53, 0, {});
    recorders[1]->click();
    EXPECT_FALSE(shownTexts().contains(u"Shortcuts must include ⌘, ⌥ or ⌃ (function keys excepted)."_s));
}

TEST_F(SettingsViewTest, AClickOnAnotherControlLeavesARecordingAloneAndOneOnTheBackgroundEndsIt)
{
    open(SettingsSection::shortcuts);
    // As from the window system: only such clicks may move the focus.
    const auto click = [this](const QWidget &widget, const QPoint &place) {
        QTest::mouseClick(controller->window().windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          widget.mapTo(&controller->window(), place));
    };
    const auto recorders = view().findChildren<HotKeyRecorderView *>();
    click(*recorders[0], recorders[0]->rect().center());
    ASSERT_TRUE(recorders[0]->isRecording());
    click(*recorders[1], recorders[1]->rect().center());
    EXPECT_TRUE(recorders[0]->isRecording());
    EXPECT_FALSE(recorders[1]->isRecording());
    EXPECT_TRUE(recorders[0]->hasFocus());
    auto *reset = named<SymbolButton>(u"Reset to default (⌥S)"_s);
    ASSERT_NE(reset, nullptr);
    click(*reset, reset->rect().center());
    EXPECT_TRUE(recorders[0]->isRecording());

    click(view().page(), QPoint(1, view().page().height() - 2));
    EXPECT_FALSE(recording.isRecording());
    EXPECT_TRUE(view().hasFocus());
    click(*recorders[1], recorders[1]->rect().center());
    EXPECT_TRUE(recorders[1]->isRecording());
    click(*recorders[1], recorders[1]->rect().center());
    EXPECT_FALSE(recording.isRecording());
}

TEST_F(SettingsViewTest, LeavingThePageEndsRecording)
{
    open(SettingsSection::shortcuts);
    view().findChildren<HotKeyRecorderView *>().first()->click();
    EXPECT_TRUE(recording.isRecording());
    view().setSelection(SettingsSection::general);
    EXPECT_FALSE(recording.isRecording());
    EXPECT_FALSE(keyMonitor.isMonitored());
    EXPECT_TRUE(view().hasFocus()) << "no other control may be marked for it";
}

TEST_F(SettingsViewTest, ClosingTheWindowEndsRecordingAndTakesTheFeedbackAway)
{
    open(SettingsSection::shortcuts);
    view().findChildren<HotKeyRecorderView *>().first()->click();
    keyMonitor.press(17, 0, u"t"_s);
    controller->window().close();
    EXPECT_FALSE(recording.isRecording());
    controller->showWindow();
    EXPECT_FALSE(shownTexts().contains(u"Shortcuts must include ⌘, ⌥ or ⌃ (function keys excepted)."_s));
}

} // namespace orvesa
