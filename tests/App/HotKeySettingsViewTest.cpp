// The page for shortcuts, over fakes.

#include "App/SettingsViewFixture.h"

#include "UI/HotKeyRecorderView.h"
#include "UI/SymbolButton.h"

#include <QMainWindow>

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

TEST_F(SettingsViewTest, LeavingThePageEndsRecording)
{
    open(SettingsSection::shortcuts);
    view().findChildren<HotKeyRecorderView *>().first()->click();
    EXPECT_TRUE(recording.isRecording());
    view().setSelection(SettingsSection::general);
    EXPECT_FALSE(recording.isRecording());
    EXPECT_FALSE(keyMonitor.isMonitored());
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
