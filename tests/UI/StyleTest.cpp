#include "UI/Style.h"

#include "Core/Localization.h"
#include "UI/AdaptiveTextScrollView.h"
#include "UI/FontFamilies.h"
#include "UI/InterfaceFonts.h"
#include "UI/PlainLabel.h"

#include <gtest/gtest.h>

#include <QFontInfo>
#include <QGuiApplication>
#include <QLabel>

#include <array>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

constexpr double textContrast = 4.5;  ///< WCAG 2.2, 1.4.3
constexpr double shapeContrast = 3.0; ///< WCAG 2.2, 1.4.11

QColor over(const QColor &layer, const QColor &below)
{
    const float share = layer.alphaF();
    const auto mix = [share](float top, float bottom) { return bottom + (top - bottom) * share; };
    return QColor::fromRgbF(mix(layer.redF(), below.redF()), mix(layer.greenF(), below.greenF()),
                            mix(layer.blueF(), below.blueF()));
}

QColor along(const SRGBGradient &gradient, float share)
{
    QColor end = Style::color(gradient.end);
    end.setAlphaF(share);
    return over(end, Style::color(gradient.start));
}

constexpr std::array appearances{Style::Appearance::light, Style::Appearance::dark};

TEST(StyleTest, KeepsEveryTextReadableOnEveryBackground)
{
    for (const Style::Appearance appearance : appearances) {
        const Style::Colors &colors = Style::colors(appearance);
        for (const QColor &text : {colors.text, colors.secondaryText, colors.error, colors.warning, colors.success}) {
            for (const QColor &background : {colors.window, colors.card, colors.field}) {
                EXPECT_GE(Style::contrast(text, background), textContrast)
                    << text.name().toStdString() << " on " << background.name().toStdString();
            }
        }
        EXPECT_GE(Style::contrast(colors.text, colors.hover), textContrast);
        EXPECT_GE(Style::contrast(colors.text, colors.line), textContrast);
    }
}

TEST(StyleTest, ShowsLinksAndFocusInEveryThemesColour)
{
    for (const Style::Appearance appearance : appearances) {
        const Style::Colors &colors = Style::colors(appearance);
        for (const AppTheme theme : allCases<AppTheme>()) {
            const QPalette palette = Style::palette(appearance, Style::color(accent(theme)));
            EXPECT_GE(Style::contrast(palette.color(QPalette::Link), colors.card), textContrast);
            for (const QColor &background : {colors.card, colors.window}) {
                EXPECT_GE(Style::contrast(palette.color(QPalette::Highlight), background), shapeContrast)
                    << rawValue(theme).toStdString();
            }
            EXPECT_GE(Style::contrast(palette.color(QPalette::Highlight), Qt::white), shapeContrast)
                << "the words on a prominent button, " << rawValue(theme).toStdString();
        }
    }
}

TEST(StyleTest, KeepsTheHeadersChoiceReadableOnEveryGradient)
{
    for (const AppTheme theme : allCases<AppTheme>()) {
        // The longest choice begins right of the header's middle.
        for (const float place : {0.55F, 0.7F, 0.9F}) {
            for (const Style::Pointer pointer : {Style::Pointer::away, Style::Pointer::over}) {
                const QColor background = over(Style::headerPickerTint(pointer), along(brandGradient(theme), place));
                EXPECT_GE(Style::contrast(Qt::white, background), textContrast)
                    << rawValue(theme).toStdString() << " at " << place;
            }
        }
    }
}

TEST(StyleTest, KeepsTheSidebarReadableInEveryTheme)
{
    for (const AppTheme theme : allCases<AppTheme>()) {
        const QColor lightest = Style::color(sidebarGradient(theme).start);
        EXPECT_GE(Style::contrast(Qt::white, over(QColor(255, 255, 255, 44), lightest)), textContrast);
        EXPECT_GE(Style::contrast(Style::badgeColor(), Qt::white), textContrast);
    }
}

class FontsTest : public testing::Test {
protected:
    ~FontsTest() override { Localization::setCurrent(AppLanguage::english); }

    const QString desktop = QFontInfo(QGuiApplication::font()).family();
};

TEST_F(FontsTest, DrawATextInTheShapesOfItsOwnLanguage)
{
    AdaptiveTextScrollView view;
    const auto shown = [&](const QString &text, TextLanguage undecided) {
        view.setContent(text, 300, 200, undecided);
        return view.font().families();
    };
    const auto expected = [&](TextLanguage language) { return FontFamilies::forContent(desktop, language); };
    EXPECT_NE(expected(TextLanguage::japanese), expected(TextLanguage::traditionalChinese))
        << "fonts for both are installed";
    EXPECT_EQ(shown(u"直す"_s, TextLanguage::traditionalChinese), expected(TextLanguage::japanese));
    EXPECT_EQ(shown(u"直骨令說"_s, TextLanguage::japanese), expected(TextLanguage::traditionalChinese));
    EXPECT_EQ(shown(u"直骨令"_s, TextLanguage::japanese), expected(TextLanguage::japanese));
    EXPECT_EQ(shown(u"直骨令"_s, TextLanguage::traditionalChinese), expected(TextLanguage::traditionalChinese))
        << "the same text, asked for in another language";
    EXPECT_EQ(shown(u"straight"_s, TextLanguage::japanese), expected(TextLanguage::other));
}

TEST_F(FontsTest, AreTheDesktopsForALanguageThatNeedsNoOther)
{
    EXPECT_EQ(FontFamilies::forInterface(u"Cantarell"_s, TextLanguage::other), QStringList(u"Cantarell"_s));
    EXPECT_EQ(Style::controlFont().families(), QStringList(desktop));
}

TEST_F(FontsTest, ShrinkForALineThatDoesNotFitAndNoFurtherThanTheyMay)
{
    QFont font = Style::controlFont();
    font.setPixelSize(20);
    const QString line = u"グラファイト"_s;
    const int natural = QFontMetrics(font).horizontalAdvance(line);
    EXPECT_EQ(Style::fitting(font, line, natural + 1, 9).pixelSize(), 20);
    const QFont smaller = Style::fitting(font, line, natural * 3 / 4, 9);
    EXPECT_LE(QFontMetrics(smaller).horizontalAdvance(line), natural * 3 / 4);
    EXPECT_GE(smaller.pixelSize(), 13);
    EXPECT_EQ(QFontMetrics(smaller).elidedText(line, Qt::ElideRight, natural * 3 / 4), line);
    EXPECT_EQ(Style::fitting(font, line, 1, 9).pixelSize(), 9);
}

TEST_F(FontsTest, FollowTheLanguageOfTheInterface)
{
    QWidget window;
    const QLabel *label = makePlainLabel(Style::headlineFont(), &window);
    Localization::setCurrent(AppLanguage::japanese);
    InterfaceFonts::follow(window);
    EXPECT_EQ(label->font().families(), FontFamilies::forInterface(desktop, TextLanguage::japanese));
    EXPECT_EQ(label->font().weight(), QFont::DemiBold);
    EXPECT_EQ(window.font().families(), FontFamilies::forInterface(desktop, TextLanguage::japanese))
        << "the widget itself";
    Localization::setCurrent(AppLanguage::english);
    InterfaceFonts::follow(window);
    EXPECT_EQ(label->font().families(), QStringList(desktop));
}

} // namespace
} // namespace orvesa
