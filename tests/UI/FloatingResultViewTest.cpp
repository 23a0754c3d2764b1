#include "UI/FloatingResultView.h"

#include "Core/SettingsStore.h"
#include "UI/AdaptiveTextScrollView.h"
#include "UI/FontFamilies.h"
#include "UI/HeaderPicker.h"
#include "UI/PanelHeader.h"
#include "UI/PanelTitle.h"
#include "UI/Spinner.h"
#include "UI/SymbolButton.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QCoreApplication>
#include <QFontInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>

#include <set>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

class FloatingResultViewTest : public testing::Test {
protected:
    void render()
    {
        view.refresh(836);
        view.show();
        view.resize(view.idealSize());
    }

    AdaptiveTextScrollView *text(const QString &name)
    {
        const auto all = view.findChildren<AdaptiveTextScrollView *>();
        for (AdaptiveTextScrollView *candidate : all) {
            if (candidate->accessibleName() == name && candidate->isVisible()) {
                return candidate;
            }
        }
        return nullptr;
    }

    SymbolButton *button(const QString &name)
    {
        const auto all = view.findChildren<SymbolButton *>();
        for (SymbolButton *candidate : all) {
            if (candidate->accessibleName() == name) {
                return candidate;
            }
        }
        return nullptr;
    }

    bool showsLabel(const QString &shown)
    {
        const auto all = view.findChildren<QLabel *>();
        return std::any_of(all.begin(), all.end(),
                           [&](const QLabel *label) { return label->isVisible() && label->text() == shown; });
    }

    FakeUserDefaults defaults;
    FakePreferredLanguages languages;
    SettingsStore settings{defaults, languages};
    FloatingResultViewModel model;
    FloatingResultView view{model, settings};
};

TEST_F(FloatingResultViewTest, ShowsProgressAndNoWayToCopyOrRetryWhileLoading)
{
    model.setSourceText(u"Hola"_s);
    render();
    EXPECT_TRUE(showsLabel(u"Thinking…"_s));
    EXPECT_EQ(text(u"Result"_s), nullptr);
    EXPECT_FALSE(button(u"Copy Result"_s)->isEnabled());
    EXPECT_FALSE(button(u"Retry"_s)->isEnabled());
}

TEST_F(FloatingResultViewTest, OffersBothAfterASuccess)
{
    model.setSourceText(u"Hola"_s);
    model.setPhase(FloatingResultViewModel::Success{u"Hello"_s});
    render();
    EXPECT_EQ(text(u"Original"_s)->toPlainText(), u"Hola"_s);
    EXPECT_EQ(text(u"Result"_s)->toPlainText(), u"Hello"_s);
    EXPECT_TRUE(button(u"Copy Result"_s)->isEnabled());
    EXPECT_TRUE(button(u"Retry"_s)->isEnabled());
}

TEST_F(FloatingResultViewTest, OffersRetryAloneAfterAFailure)
{
    model.setPhase(FloatingResultViewModel::Failure{u"No text is selected."_s});
    render();
    EXPECT_EQ(text(u"Result"_s)->toPlainText(), u"No text is selected."_s);
    EXPECT_FALSE(button(u"Copy Result"_s)->isEnabled());
    EXPECT_TRUE(button(u"Retry"_s)->isEnabled());
}

TEST_F(FloatingResultViewTest, HidesTheSourceSectionWithoutASource)
{
    model.setSourceText(u"Hola"_s);
    render();
    const int withSource = view.idealSize().height();
    EXPECT_TRUE(showsLabel(u"Original"_s));
    model.setSourceText({});
    render();
    EXPECT_FALSE(showsLabel(u"Original"_s));
    EXPECT_LT(view.idealSize().height(), withSource);
}

TEST_F(FloatingResultViewTest, ShowsMarkupAsText)
{
    const QString markup = u"<b>bold</b> <img src=x> &amp;"_s;
    model.setSourceText(markup);
    model.setPhase(FloatingResultViewModel::Success{markup});
    model.setStatusMessage(markup);
    render();
    EXPECT_EQ(text(u"Original"_s)->toPlainText(), markup);
    EXPECT_EQ(text(u"Result"_s)->toPlainText(), markup);
    const auto labels = view.findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
    model.setPhase(FloatingResultViewModel::Failure{markup});
    render();
    EXPECT_EQ(text(u"Result"_s)->toPlainText(), markup);
}

TEST_F(FloatingResultViewTest, ShowsThePickerOfTheTask)
{
    model.setTranslationLanguage(TargetLanguage::japanese);
    render();
    const auto pickers = view.findChildren<HeaderPicker *>();
    ASSERT_EQ(pickers.size(), 2);
    EXPECT_TRUE(pickers[0]->isVisible());
    EXPECT_EQ(pickers[0]->currentText(), u"Japanese"_s);
    EXPECT_FALSE(pickers[1]->isVisible());

    std::optional<TargetLanguage> picked;
    model.onLanguageChange = [&](TargetLanguage language) { picked = language; };
    Q_EMIT pickers[0]->activated(2);
    EXPECT_EQ(picked, TargetLanguage::english);
}

TEST_F(FloatingResultViewTest, ChangesNothingWhenWhatIsChosenIsChosenAgain)
{
    int changes = 0;
    model.onLanguageChange = [&](TargetLanguage) { ++changes; };
    model.onPolishModeChange = [&](PolishMode) { ++changes; };
    const auto chooseCurrent = [](HeaderPicker *picker) {
        ASSERT_TRUE(picker->isVisible());
        picker->showPopup();
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::sendEvent(picker->view(), &press);
        QAccessible::queryAccessibleInterface(picker)->actionInterface()->doAction(picker->currentText());
    };
    const auto pickers = view.findChildren<HeaderPicker *>();
    model.setTranslationLanguage(TargetLanguage::japanese);
    render();
    chooseCurrent(pickers[0]);
    model.setTranslationLanguage(std::nullopt);
    model.setPolishMode(PolishMode::concise);
    render();
    chooseCurrent(pickers[1]);
    EXPECT_EQ(changes, 0);
    Q_EMIT pickers[1]->activated(0);
    EXPECT_EQ(changes, 1);
}

TEST_F(FloatingResultViewTest, GivesThePickerTheRoomOfItsTextsInEveryLanguage)
{
    // By itself: within the view the fonts may change as well, which has everything measured anew.
    PanelHeader header(model);
    header.resize(420, header.height());
    for (const bool polishes : {false, true}) {
        model.setTranslationLanguage(polishes ? std::nullopt : std::optional(TargetLanguage::traditionalChinese));
        model.setPolishMode(polishes ? std::optional(PolishMode::businessJapanese) : std::nullopt);
        header.refresh();
        header.show();
        const HeaderPicker *picker = header.findChildren<HeaderPicker *>().at(polishes ? 1 : 0);
        std::set<int> widths;
        for (const AppLanguage language :
             {AppLanguage::japanese, AppLanguage::english, AppLanguage::traditionalChinese, AppLanguage::english}) {
            settings.setAppLanguage(language);
            header.refresh();
            QCoreApplication::sendPostedEvents();
            EXPECT_EQ(picker->width(), picker->sizeHint().width()) << picker->currentText().toStdString();
            widths.insert(picker->width());
        }
        EXPECT_GT(widths.size(), 1U);
    }
}

TEST_F(FloatingResultViewTest, ForwardsTheButtons)
{
    int copies = 0;
    int retries = 0;
    int closes = 0;
    model.onCopy = [&] { ++copies; };
    model.onRetry = [&] { ++retries; };
    model.onClose = [&] { ++closes; };
    model.setPhase(FloatingResultViewModel::Success{u"Hello"_s});
    render();
    button(u"Copy Result"_s)->click();
    button(u"Retry"_s)->click();
    button(u"Close"_s)->click();
    EXPECT_EQ(copies, 1);
    EXPECT_EQ(retries, 1);
    EXPECT_EQ(closes, 1);
}

TEST_F(FloatingResultViewTest, FollowsTheInterfaceLanguage)
{
    settings.setAppLanguage(AppLanguage::japanese);
    model.setSourceText(u"Hola"_s);
    render();
    EXPECT_TRUE(showsLabel(u"原文"_s));
    EXPECT_TRUE(showsLabel(u"考え中…"_s));
    EXPECT_NE(button(u"閉じる"_s), nullptr);
    settings.setAppLanguage(AppLanguage::english);
}

TEST_F(FloatingResultViewTest, DrawsItsTextsInTheShapesOfTheInterfaceLanguage)
{
    const QString desktop = QFontInfo(QGuiApplication::font()).family();
    model.setSourceText(u"Hola"_s);
    for (const AppLanguage language : {AppLanguage::japanese, AppLanguage::traditionalChinese, AppLanguage::english}) {
        settings.setAppLanguage(language);
        render();
        const auto labels = view.findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            EXPECT_EQ(label->font().families(), FontFamilies::forInterface(desktop, textLanguage(language)))
                << label->text().toStdString();
        }
    }
}

TEST_F(FloatingResultViewTest, DrawsItsTitleInTheShapesOfTheTitlesLanguage)
{
    const QString desktop = QFontInfo(QGuiApplication::font()).family();
    const auto *title = view.findChild<PanelTitle *>();
    for (const AppLanguage language : {AppLanguage::english, AppLanguage::japanese, AppLanguage::traditionalChinese}) {
        settings.setAppLanguage(language);
        model.setTaskTitle(u"直す"_s);
        render();
        EXPECT_EQ(title->font().families(), FontFamilies::forContent(desktop, TextLanguage::japanese));
    }
    model.setTaskTitle(u"直骨令"_s);
    for (const AppLanguage language : {AppLanguage::japanese, AppLanguage::traditionalChinese}) {
        settings.setAppLanguage(language);
        render();
        EXPECT_EQ(title->font().families(), FontFamilies::forContent(desktop, textLanguage(language)));
    }
    EXPECT_EQ(title->font().weight(), QFont::DemiBold);
    settings.setAppLanguage(AppLanguage::english);
}

TEST_F(FloatingResultViewTest, IsAsWideAsItsTextsWantIt)
{
    model.setSourceText(QString(301, u'x'));
    render();
    EXPECT_EQ(view.idealSize().width(), 520);
    model.setSourceText(u"short"_s);
    render();
    EXPECT_EQ(view.idealSize().width(), 420);
}

TEST_F(FloatingResultViewTest, KeepsLongTextsWithinTheScreen)
{
    const QString words = u"word "_s.repeated(4000);
    model.setSourceText(words);
    model.setPhase(FloatingResultViewModel::Success{words.repeated(10)});
    render();
    EXPECT_EQ(text(u"Original"_s)->height(), 150);
    EXPECT_EQ(text(u"Result"_s)->height(), 376);
}

TEST_F(FloatingResultViewTest, OffersEveryChoiceOfAPickerToScreenReaders)
{
    model.setPolishMode(PolishMode::concise);
    render();
    HeaderPicker *picker = view.findChildren<HeaderPicker *>().at(1);
    QAccessibleInterface *described = QAccessible::queryAccessibleInterface(picker);
    ASSERT_NE(described->actionInterface(), nullptr);
    EXPECT_EQ(described->role(), QAccessible::ComboBox);
    EXPECT_EQ(described->text(QAccessible::Value), picker->currentText());
    EXPECT_EQ(described->actionInterface()->actionNames().size(), picker->count() + 1);
    std::optional<PolishMode> picked;
    model.onPolishModeChange = [&](PolishMode mode) { picked = mode; };
    described->actionInterface()->doAction(picker->itemText(0));
    EXPECT_EQ(picked, allCases<PolishMode>()[0]);
    EXPECT_EQ(described->text(QAccessible::Value), picker->itemText(0));
}

TEST_F(FloatingResultViewTest, MakesALongTitleSmallerBeforeItIsCut)
{
    model.setTranslationLanguage(TargetLanguage::traditionalChinese);
    model.setTaskTitle(u"Translate → Traditional Chinese"_s);
    render();
    const auto *title = view.findChild<PanelTitle *>();
    EXPECT_FALSE(title->isShortened());
    model.setTaskTitle(u"Line\nbreak "_s.repeated(20));
    render();
    EXPECT_TRUE(title->isShortened());
    EXPECT_FALSE(title->accessibleName().contains(u'\n'));
}

TEST_F(FloatingResultViewTest, SpinsOnlyWhileItIsSeen)
{
    render();
    auto *spinner = view.findChild<Spinner *>();
    EXPECT_TRUE(spinner->isSpinning());
    model.setPhase(FloatingResultViewModel::Success{u"Hello"_s});
    render();
    EXPECT_FALSE(spinner->isSpinning());
    model.setPhase(FloatingResultViewModel::Loading{});
    render();
    EXPECT_TRUE(spinner->isSpinning());
    view.hide();
    EXPECT_FALSE(spinner->isSpinning());
}

TEST_F(FloatingResultViewTest, LeadsThroughItsControlsInReadingOrder)
{
    model.setSourceText(u"Hola"_s);
    model.setTranslationLanguage(TargetLanguage::japanese);
    model.setPhase(FloatingResultViewModel::Success{u"Hello"_s});
    render();
    QStringList names;
    const QWidget *first = view.findChildren<HeaderPicker *>().at(0);
    for (const QWidget *next = first;;) {
        if (next->isVisible() && next->isEnabled() && (next->focusPolicy() & Qt::TabFocus) != 0) {
            names.append(next->accessibleName());
        }
        next = next->nextInFocusChain();
        if (next == first) {
            break;
        }
    }
    EXPECT_EQ(names, QStringList(
                         {u"Target Language"_s, u"Close"_s, u"Original"_s, u"Result"_s, u"Copy Result"_s, u"Retry"_s}));
}

} // namespace
} // namespace orvesa
