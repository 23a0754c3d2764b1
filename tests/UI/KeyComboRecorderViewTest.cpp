#include "UI/HotKeyRecorderView.h"

#include "Core/HotKeyRecordingState.h"
#include "Core/SettingsStore.h"
#include "UI/Style.h"
#include "fakes/FakeKeyMonitor.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDeadlineTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <vector>

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

double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// WCAG's.
double contrast(const QColor &one, const QColor &other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

class RecorderTest : public testing::Test {
protected:
    RecorderTest()
    {
        auto *column = new QVBoxLayout(&window);
        column->addWidget(&translate);
        column->addWidget(&polish);
        column->addWidget(&prompt);
        window.show();
        window.activateWindow();
        QCoreApplication::processEvents();
        EXPECT_TRUE(window.isActiveWindow());
    }

    ~RecorderTest() override
    {
        // Children of the window by its layout, members here: the window must not delete them.
        for (QWidget *child :
             {static_cast<QWidget *>(&translate), static_cast<QWidget *>(&polish), static_cast<QWidget *>(&prompt)}) {
            child->setParent(nullptr);
        }
    }

    KeyComboRecorderView::Feedback feedback()
    {
        return [this](const std::optional<QString> &message) { messages.push_back(message); };
    }

    static void clickWithMouse(QWidget &widget)
    {
        const QPointF place = widget.rect().center();
        QMouseEvent press(QEvent::MouseButtonPress, place, widget.mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QMouseEvent release(QEvent::MouseButtonRelease, place, widget.mapToGlobal(place), Qt::LeftButton, Qt::NoButton,
                            Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &press);
        QCoreApplication::sendEvent(&widget, &release);
    }

    static void type(QWidget &widget, Qt::Key key)
    {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &press);
        QCoreApplication::sendEvent(&widget, &release);
    }

    void expectIdle() const
    {
        EXPECT_FALSE(translate.isRecording());
        EXPECT_FALSE(polish.isRecording());
        EXPECT_FALSE(prompt.isRecording());
        EXPECT_FALSE(state.isRecording());
        EXPECT_FALSE(keys.isMonitored());
    }

    FakeUserDefaults defaults;
    FakePreferredLanguages languages;
    SettingsStore settings{defaults, languages};
    HotKeyRecordingState state;
    FakeKeyMonitor keys;
    std::vector<std::optional<QString>> messages;
    std::optional<KeyCombo> promptCombo;
    QWidget window;
    HotKeyRecorderView translate{HotKeyAction::translateSelection, settings, feedback(), state, keys};
    HotKeyRecorderView polish{HotKeyAction::polishSelection, settings, feedback(), state, keys};
    KeyComboRecorderView prompt{
        {[this] { return promptCombo; }, [this](const KeyCombo &combo) { promptCombo = combo; }},
        u"None"_s,
        {},
        {},
        state,
        keys};
};

TEST_F(RecorderTest, ShowsTheCombinationOrThePlaceholder)
{
    EXPECT_EQ(translate.shownText(), u"⌥D"_s);
    EXPECT_EQ(prompt.shownText(), u"None"_s);
    promptCombo = KeyCombo{40, 0x1B00, u"K"_s};
    EXPECT_EQ(prompt.shownText(), u"⌃⌥⇧⌘K"_s);
    EXPECT_EQ(translate.toolTip(), u"Click, then press the new shortcut. Press ⎋ to cancel."_s);
}

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

TEST_F(RecorderTest, TellsScreenReadersItsPurposeAndItsState)
{
    QAccessibleInterface *const accessible = QAccessible::queryAccessibleInterface(&translate);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Name), u"Translate Selection, ⌥D"_s);
    EXPECT_EQ(accessible->text(QAccessible::Description), translate.toolTip());
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    // It stays down for a moment, as pressed by a finger.
    const QDeadlineTimer deadline(std::chrono::seconds(2));
    while (!translate.isRecording() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
    EXPECT_TRUE(translate.isRecording());
    EXPECT_EQ(accessible->text(QAccessible::Name), u"Translate Selection, Type shortcut…"_s);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&prompt)->text(QAccessible::Name), u"None"_s);
}

TEST_F(RecorderTest, KeepsItsSizeWhenItListens)
{
    const QSize resting = translate.sizeHint();
    clickWithMouse(translate);
    EXPECT_EQ(translate.sizeHint(), resting);
    EXPECT_GE(resting.width(), 112 + 2 * KeyComboRecorderView::outset());
    EXPECT_EQ(resting.height(), 30 + 2 * KeyComboRecorderView::outset());
}

TEST_F(RecorderTest, IsReadWhileItListensInEveryTheme)
{
    for (const AppTheme theme : allCases<AppTheme>()) {
        for (const Style::Appearance appearance : {Style::Appearance::light, Style::Appearance::dark}) {
            const QColor themeAccent = Style::color(accent(theme));
            window.setPalette(Style::palette(appearance, themeAccent));
            translate.setAccent(themeAccent);
            clickWithMouse(translate);
            ASSERT_TRUE(translate.isRecording());
            const QImage picture = translate.grab().toImage();
            const QColor background = picture.pixelColor(12, picture.height() / 2);
            // Strokes at this size are no more than a pixel wide, and few of their pixels have the pen's whole colour.
            double greatest = 0;
            for (int y = 8; y < picture.height() - 8; ++y) {
                for (int x = 12; x < picture.width() - 12; ++x) {
                    greatest = std::max(greatest, contrast(picture.pixelColor(x, y), background));
                }
            }
            EXPECT_GE(greatest, 4.3) << static_cast<int>(theme) << ' ' << static_cast<int>(appearance);
            clickWithMouse(translate);
        }
    }
}

TEST_F(RecorderTest, FollowsTheSettingsAndTheLanguage)
{
    settings.setCombo({keyT, 0x100, u"T"_s}, HotKeyAction::translateSelection);
    EXPECT_EQ(translate.accessibleName(), u"Translate Selection, ⌘T"_s);
    settings.setAppLanguage(AppLanguage::japanese);
    EXPECT_TRUE(translate.accessibleName().endsWith(u", ⌘T"_s));
    EXPECT_FALSE(translate.accessibleName().startsWith(u"Translate"_s));
    EXPECT_NE(translate.toolTip(), u"Click, then press the new shortcut. Press ⎋ to cancel."_s);
    settings.setAppLanguage(AppLanguage::english);
}

} // namespace
} // namespace orvesa
