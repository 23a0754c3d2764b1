#include "UI/RecorderTest.h"

#include "UI/Style.h"
#include "fakes/Happening.h"

#include <gtest/gtest.h>

#include <QAccessible>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

constexpr quint32 keyT = 17;

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

TEST_F(RecorderTest, ShowsTheCombinationOrThePlaceholder)
{
    EXPECT_EQ(translate.shownText(), u"⌥D"_s);
    EXPECT_EQ(prompt.shownText(), u"None"_s);
    promptCombo = KeyCombo{40, 0x1B00, u"K"_s};
    EXPECT_EQ(prompt.shownText(), u"⌃⌥⇧⌘K"_s);
    EXPECT_EQ(translate.toolTip(), u"Click, then press the new shortcut. Press ⎋ to cancel."_s);
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
    EXPECT_TRUE(happens([this] { return translate.isRecording(); }));
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
