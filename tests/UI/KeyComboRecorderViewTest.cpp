#include "UI/RecorderTest.h"

#include <gtest/gtest.h>

#include <QApplication>

#include <tuple>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

constexpr quint32 keyA = 0;
constexpr quint32 keyS = 1;
constexpr quint32 keyD = 2;
constexpr quint32 keyT = 17;
constexpr quint32 keyReturn = 36;
constexpr quint32 keyTab = 48;
constexpr quint32 keySpace = 49;
constexpr quint32 keyEscape = 53;
constexpr quint32 keyF5 = 96;

const QString needModifier = u"Shortcuts must include ⌘, ⌥ or ⌃ (function keys excepted)."_s;

TEST_F(RecorderTest, StoresThePressedCombination)
{
    messages.clear();
    clickWithMouse(translate);
    EXPECT_TRUE(translate.isRecording());
    EXPECT_TRUE(state.isRecording());
    EXPECT_TRUE(keys.isMonitored());
    EXPECT_EQ(translate.shownText(), u"Type shortcut…"_s);
    EXPECT_EQ(messages, std::vector<std::optional<QString>>{std::nullopt});
    EXPECT_TRUE(keys.press(keyT, FakeKeyMonitor::command | FakeKeyMonitor::shift, u"T"_s));
    EXPECT_EQ(settings.combo(HotKeyAction::translateSelection), (KeyCombo{keyT, 0x300, u"T"_s}));
    EXPECT_EQ(translate.shownText(), u"⇧⌘T"_s);
    EXPECT_EQ(messages, (std::vector<std::optional<QString>>{std::nullopt, std::nullopt}));
    expectIdle();
}

TEST_F(RecorderTest, TakesKeysThatControlsUseAsCandidates)
{
    for (const auto &[key, text, shown] :
         {std::tuple{keyReturn, u"\r"_s, u"⌘↩"_s}, std::tuple{keyTab, u"\t"_s, u"⌘⇥"_s},
          std::tuple{keySpace, u" "_s, u"⌘Space"_s}}) {
        clickWithMouse(prompt);
        EXPECT_TRUE(keys.press(key, FakeKeyMonitor::command, text));
        EXPECT_EQ(prompt.shownText(), shown);
        expectIdle();
    }
    clickWithMouse(prompt);
    EXPECT_TRUE(keys.press(keyF5, 0, QString()));
    EXPECT_EQ(prompt.shownText(), u"F5"_s);
    clickWithMouse(prompt);
    EXPECT_TRUE(keys.press(keyF5, FakeKeyMonitor::shift, QString()));
    EXPECT_EQ(prompt.shownText(), u"⇧F5"_s);
}

TEST_F(RecorderTest, SaysThatAModifierIsNeededAndGoesOn)
{
    clickWithMouse(translate);
    for (const auto &[key, flags, text] :
         {std::tuple{keyT, 0U, u"t"_s}, std::tuple{keyT, FakeKeyMonitor::shift, u"T"_s},
          std::tuple{keyReturn, 0U, u"\r"_s}, std::tuple{keyTab, FakeKeyMonitor::shift, u"\t"_s},
          std::tuple{MonitoredKeyPress::unknownKeyCode, FakeKeyMonitor::option, QString()}}) {
        messages.clear();
        EXPECT_TRUE(keys.press(key, flags, text));
        EXPECT_EQ(messages, std::vector<std::optional<QString>>{needModifier});
        EXPECT_TRUE(translate.isRecording());
    }
    EXPECT_EQ(translate.shownText(), u"Type shortcut…"_s);
    EXPECT_TRUE(settings.hotKeyOverrides().empty());
}

TEST_F(RecorderTest, RefusesTheShortcutOfAnotherActionAndGoesOn)
{
    clickWithMouse(translate);
    messages.clear();
    EXPECT_TRUE(keys.press(keyS, FakeKeyMonitor::option, u"s"_s));
    EXPECT_EQ(messages, std::vector<std::optional<QString>>{u"⌥S is already used by another action."_s});
    EXPECT_TRUE(translate.isRecording());
    EXPECT_TRUE(settings.hotKeyOverrides().empty());
    EXPECT_TRUE(keys.press(keyD, FakeKeyMonitor::option, u"d"_s)) << "its own is no conflict";
    expectIdle();
    EXPECT_TRUE(settings.hotKeyOverrides().empty());
    EXPECT_EQ(messages.back(), std::nullopt);
}

TEST_F(RecorderTest, RemovesTheOverrideWhenTheDefaultIsPressed)
{
    settings.setCombo({keyT, 0x100, u"T"_s}, HotKeyAction::translateSelection);
    EXPECT_EQ(translate.shownText(), u"⌘T"_s);
    clickWithMouse(translate);
    EXPECT_TRUE(keys.press(keyD, FakeKeyMonitor::option, u"d"_s));
    EXPECT_FALSE(settings.isCustomized(HotKeyAction::translateSelection));
    EXPECT_EQ(translate.shownText(), u"⌥D"_s);
}

TEST_F(RecorderTest, IsCancelledByEscapeAloneOnly)
{
    clickWithMouse(translate);
    for (const quint32 held : {FakeKeyMonitor::command, FakeKeyMonitor::option, FakeKeyMonitor::control,
                               FakeKeyMonitor::shift, FakeKeyMonitor::command | FakeKeyMonitor::shift}) {
        messages.clear();
        EXPECT_TRUE(keys.press(keyEscape, held, u"\u001b"_s));
        EXPECT_EQ(messages, std::vector<std::optional<QString>>{needModifier});
        EXPECT_TRUE(translate.isRecording());
    }
    constexpr quint32 capsLock = 0x10000;
    EXPECT_TRUE(keys.press(keyEscape, capsLock, u"\u001b"_s));
    expectIdle();
    EXPECT_TRUE(settings.hotKeyOverrides().empty());
}

TEST_F(RecorderTest, IsCancelledByASecondClick)
{
    clickWithMouse(translate);
    clickWithMouse(translate);
    expectIdle();
    EXPECT_EQ(translate.shownText(), u"⌥D"_s);
    EXPECT_EQ(keys.installs(), 1);
}

TEST_F(RecorderTest, LetsOnlyOneControlListen)
{
    clickWithMouse(translate);
    clickWithMouse(polish);
    EXPECT_TRUE(translate.isRecording());
    EXPECT_FALSE(polish.isRecording());
    EXPECT_EQ(keys.installs(), 1);
    EXPECT_TRUE(keys.press(keyT, FakeKeyMonitor::option, u"t"_s));
    EXPECT_EQ(settings.combo(HotKeyAction::translateSelection).displayText(), u"⌥T"_s);
    EXPECT_EQ(settings.combo(HotKeyAction::polishSelection).displayText(), u"⌥S"_s);
    clickWithMouse(polish);
    EXPECT_TRUE(polish.isRecording());
}

TEST_F(RecorderTest, TakesAShortcutThatTheDesktopDeliversAsSuch)
{
    state.takeShortcut({keyA, 0x800, u"A"_s});
    EXPECT_TRUE(settings.hotKeyOverrides().empty());
    clickWithMouse(translate);
    messages.clear();
    state.takeShortcut({keyS, 0x800, u"S"_s});
    EXPECT_EQ(messages, std::vector<std::optional<QString>>{u"⌥S is already used by another action."_s});
    EXPECT_TRUE(translate.isRecording());
    state.takeShortcut({keyD, 0x800, u"D"_s});
    expectIdle();
    state.takeShortcut({keyT, 0x800, u"T"_s});
    EXPECT_TRUE(settings.hotKeyOverrides().empty());
}

TEST_F(RecorderTest, StopsWhenItCannotListenAnyMore)
{
    const auto expectStopped = [this](const char *how, auto &&leave) {
        SCOPED_TRACE(how);
        clickWithMouse(translate);
        ASSERT_TRUE(translate.isRecording());
        ASSERT_TRUE(translate.hasFocus());
        leave();
        expectIdle();
        EXPECT_TRUE(settings.hotKeyOverrides().empty());
        translate.show();
        translate.setEnabled(true);
        window.show();
        QApplication::setActiveWindow(&window); // the platform without a display forgets it when a window was hidden
        QCoreApplication::processEvents();
    };
    expectStopped("the control is hidden", [this] { translate.hide(); });
    expectStopped("the window closes", [this] { window.close(); });
    expectStopped("the window is hidden", [this] { window.hide(); });
    expectStopped("the control is disabled", [this] { translate.setEnabled(false); });
    expectStopped("another control gets the focus", [this] { prompt.setFocus(); });
    expectStopped("another window gets the keyboard", [this] {
        QWidget other;
        other.show();
        other.activateWindow();
        QCoreApplication::processEvents();
        EXPECT_TRUE(other.isActiveWindow());
    });
}

TEST_F(RecorderTest, LeavesNothingSetWhenItIsDeleted)
{
    auto *recorder = new HotKeyRecorderView(HotKeyAction::ocrTranslate, settings, {}, state, keys, &window);
    recorder->show();
    clickWithMouse(*recorder);
    EXPECT_TRUE(state.isRecording());
    delete recorder;
    expectIdle();
}

TEST_F(RecorderTest, MayBeDeletedByWhatItWrites)
{
    KeyComboRecorderView *recorder = nullptr;
    bool hasWritten = false;
    recorder = new KeyComboRecorderView({[] { return std::nullopt; },
                                         [&](const KeyCombo &) {
                                             hasWritten = true;
                                             delete recorder;
                                         }},
                                        u"None"_s, {}, feedback(), state, keys, &window);
    recorder->show();
    clickWithMouse(*recorder);
    EXPECT_TRUE(keys.press(keyT, FakeKeyMonitor::option, u"t"_s));
    EXPECT_TRUE(hasWritten);
    expectIdle();
}

TEST_F(RecorderTest, IsReachedAndUsedByKeyboard)
{
    EXPECT_EQ(translate.focusPolicy(), Qt::TabFocus);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        translate.setFocus();
        type(translate, key);
        EXPECT_TRUE(translate.isRecording()) << key;
        EXPECT_TRUE(keys.press(keyEscape, 0, u"\u001b"_s));
        expectIdle();
        EXPECT_TRUE(translate.hasFocus());
    }
}

} // namespace
} // namespace orvesa
