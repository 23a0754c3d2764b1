#include "App/TranslationCoordinator.h"

#include "App/ApplicationOnFakes.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCursor>
#include <QWidget>

#include <algorithm>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

using Model = FloatingResultViewModel;
using Trust = FakeAccessibilityTrust::Trust;

class TranslationCoordinatorTest : public testing::Test, protected ApplicationOnFakes {
protected:
    Model &model() { return panel.viewModel(); }

    void runTranslate(const QString &selected)
    {
        elements.focusSelectedText(selected);
        coordinator->run(coordinator->translateTask(), 0ms);
    }

    QString failure()
    {
        const auto *phase = std::get_if<Model::Failure>(&model().phase());
        return phase != nullptr ? phase->message : QString();
    }

    QString success()
    {
        const auto *phase = std::get_if<Model::Success>(&model().phase());
        return phase != nullptr ? phase->text : QString();
    }
};

TEST_F(TranslationCoordinatorTest, ShowsLoadingBeforeTheServiceIsAskedAndThenTheAnswer)
{
    runTranslate(u" Hola "_s);
    EXPECT_EQ(model().taskTitle(), u"Translate → Traditional Chinese"_s);
    EXPECT_EQ(model().sourceText(), u" Hola "_s);
    EXPECT_TRUE(std::holds_alternative<Model::Loading>(model().phase()));
    EXPECT_EQ(model().translationLanguage(), TargetLanguage::traditionalChinese);
    EXPECT_FALSE(model().polishMode());
    EXPECT_TRUE(panel.isVisible());
    ASSERT_EQ(calls().size(), 1U);
    EXPECT_EQ(calls()[0]->text, u" Hola "_s);
    EXPECT_EQ(calls()[0]->config, settings.activeConfig());
    calls()[0]->succeed(u"你好"_s);
    EXPECT_EQ(success(), u"你好"_s);
}

TEST_F(TranslationCoordinatorTest, ContactsAServiceAheadOnlyOnceItsKeyWasFound)
{
    using Providers = std::vector<AIProviderType>;
    runTranslate(u"uno"_s);
    EXPECT_EQ(providers.preconnected(), Providers()) << "it may have no key";
    calls()[0]->fail(AppError(AppError::Kind::missingAPIKey));
    runTranslate(u"dos"_s);
    EXPECT_EQ(providers.preconnected(), Providers()) << "it has none";
    calls()[1]->fail(u"HTTP 500"_s);
    runTranslate(u"tres"_s);
    EXPECT_EQ(providers.preconnected(), Providers{AIProviderType::gemini});
    calls()[2]->fail(AppError(AppError::Kind::missingAPIKey));
    runTranslate(u"cuatro"_s);
    settings.setDefaultProvider(AIProviderType::xAI);
    runTranslate(u"cinco"_s);
    EXPECT_EQ(providers.preconnected(), Providers{AIProviderType::gemini}) << "the key was removed; another has its own";
}

TEST_F(TranslationCoordinatorTest, ReadsTheSettingsAtEveryRun)
{
    runTranslate(u"Hola"_s);
    settings.setDefaultProvider(AIProviderType::xAI);
    settings.setTargetLanguage(TargetLanguage::english);
    settings.setThinkingEnabled(true);
    runTranslate(u"Hola"_s);
    EXPECT_EQ(calls()[1]->config, settings.activeConfig());
    EXPECT_EQ(calls()[1]->config.providerType, AIProviderType::xAI);
    EXPECT_EQ(calls()[1]->task, AITask(TranslateTask{u"English"_s}));
}

TEST_F(TranslationCoordinatorTest, ASecondRequestCancelsTheFirstAndShowsItsOwn)
{
    runTranslate(u"uno"_s);
    runTranslate(u"dos"_s);
    EXPECT_TRUE(calls()[0]->stop.stop_requested());
    EXPECT_FALSE(calls()[1]->stop.stop_requested());
    EXPECT_EQ(model().sourceText(), u"dos"_s);
    // A late result of the cancelled job is written like any other, and overwritten by the newer one.
    calls()[0]->fail(u"Operation canceled"_s);
    EXPECT_EQ(failure(), u"API request failed: Operation canceled"_s);
    calls()[1]->succeed(u"two"_s);
    EXPECT_EQ(success(), u"two"_s);
    EXPECT_EQ(model().sourceText(), u"dos"_s);
}

TEST_F(TranslationCoordinatorTest, FiftyPressesOverNothingSelectedCopyTwice)
{
    for (int press = 0; press < 50; ++press) {
        coordinator->run(coordinator->translateTask(), 0ms);
    }
    clock.advance(5s);
    EXPECT_EQ(keyboard.posted().size(), 4U) << "the first press's stroke, which had begun, and the last one's";
    EXPECT_EQ(failure(), u"No text is selected. Select some text in any app and try again."_s);
    EXPECT_TRUE(calls().empty());
}

TEST_F(TranslationCoordinatorTest, WaitsForTheMenuToClose)
{
    elements.focusSelectedText(u"Hola"_s);
    coordinator->run(coordinator->polishTask(), TranslationCoordinator::menuDelay);
    clock.advance(199ms);
    EXPECT_TRUE(elements.reads().empty());
    clock.advance(1ms);
    EXPECT_EQ(calls().size(), 1U);
    EXPECT_EQ(model().taskTitle(), u"Polish (Business Japanese)"_s);
    EXPECT_EQ(model().polishMode(), PolishMode::businessJapanese);
    EXPECT_FALSE(model().translationLanguage());
}

TEST_F(TranslationCoordinatorTest, GoesOnWhenItsWaitIsCancelled)
{
    elements.focusSelectedText(u"Hola"_s);
    coordinator->run(coordinator->polishTask(), TranslationCoordinator::menuDelay);
    coordinator->run(coordinator->translateTask(), 0ms);
    ASSERT_EQ(calls().size(), 2U);
    EXPECT_TRUE(std::holds_alternative<PolishTask>(calls()[0]->task));
    EXPECT_EQ(model().taskTitle(), u"Translate → Traditional Chinese"_s);
}

TEST_F(TranslationCoordinatorTest, AsksForTrustAndSaysSo)
{
    trust.setTrust(Trust::missing);
    runTranslate(u"Hola"_s);
    EXPECT_EQ(trust.requests(), 1);
    EXPECT_EQ(failure(), AppError(AppError::Kind::accessibilityPermissionDenied).errorDescription());
    EXPECT_TRUE(panel.isVisible());
    EXPECT_TRUE(calls().empty());
    EXPECT_TRUE(providers.preconnected().empty());
}

TEST_F(TranslationCoordinatorTest, KeepsThePolishPickerWhenAnErrorIsShown)
{
    elements.focusSelectedText(u"Hola"_s);
    coordinator->run(coordinator->polishTask(), 0ms);
    elements.focusSelectedText(QString());
    coordinator->run(coordinator->translateTask(), 0ms);
    clock.advance(1s); // the copy brings nothing
    EXPECT_EQ(failure(), AppError(AppError::Kind::noSelectedText).errorDescription());
    EXPECT_EQ(model().sourceText(), QString());
    EXPECT_FALSE(model().translationLanguage());
    EXPECT_EQ(model().polishMode(), PolishMode::businessJapanese);
}

TEST_F(TranslationCoordinatorTest, ShowsTheLanguageNameThatHasNoCase)
{
    elements.focusSelectedText(u"Hola"_s);
    coordinator->run(TranslateTask{u"Korean"_s}, 0ms);
    EXPECT_EQ(model().taskTitle(), u"Translate → Korean"_s);
    EXPECT_FALSE(model().translationLanguage());
    coordinator->run(CustomTask{u"Summarize"_s, u"Summarize:"_s}, 0ms);
    EXPECT_EQ(model().taskTitle(), u"Summarize"_s);
    EXPECT_FALSE(model().translationLanguage());
    EXPECT_FALSE(model().polishMode());
}

TEST_F(TranslationCoordinatorTest, ReRunsTheSameTextForAPickedLanguageWithoutSavingIt)
{
    elements.focusSelectedText(u"Hola"_s);
    coordinator->run(coordinator->polishTask(), 0ms);
    calls()[0]->succeed(u"polished"_s);
    elements.focusSelectedText(u"something else"_s);
    model().onLanguageChange(TargetLanguage::japanese);
    ASSERT_EQ(calls().size(), 2U);
    EXPECT_EQ(calls()[1]->text, u"Hola"_s);
    EXPECT_EQ(calls()[1]->task, AITask(TranslateTask{u"Japanese"_s}));
    EXPECT_EQ(settings.targetLanguage(), TargetLanguage::traditionalChinese);
    EXPECT_TRUE(defaults.writes().empty());
    EXPECT_EQ(model().translationLanguage(), TargetLanguage::japanese);
    EXPECT_FALSE(model().polishMode());

    model().onPolishModeChange(PolishMode::concise);
    EXPECT_EQ(calls()[2]->task, AITask(PolishTask{PolishMode::concise}));
    EXPECT_EQ(settings.polishMode(), PolishMode::businessJapanese);
}

TEST_F(TranslationCoordinatorTest, IgnoresAPickerWithoutAText)
{
    model().onLanguageChange(TargetLanguage::japanese);
    EXPECT_TRUE(calls().empty());
    EXPECT_FALSE(model().statusMessage());
}

TEST_F(TranslationCoordinatorTest, RetriesTheLastTextThatWasCaptured)
{
    runTranslate(u"Hola"_s);
    calls()[0]->fail(u"HTTP 500: "_s);
    EXPECT_EQ(failure(), u"API request failed: HTTP 500: "_s);
    EXPECT_EQ(model().sourceText(), u"Hola"_s);
    runTranslate(u"  "_s);
    clock.advance(1s); // the copy brings nothing
    EXPECT_EQ(model().sourceText(), QString());
    model().onRetry();
    ASSERT_EQ(calls().size(), 2U);
    EXPECT_EQ(calls()[1]->text, u"Hola"_s);
    EXPECT_EQ(calls()[1]->task, calls()[0]->task);
    EXPECT_EQ(model().sourceText(), u"Hola"_s);
}

TEST_F(TranslationCoordinatorTest, RetriesTheTaskThatCapturedAndNotTheOneThatFailedTo)
{
    runTranslate(u"Hola"_s);
    calls()[0]->succeed(u"Hello"_s);
    elements.focusSelectedText(u""_s);
    coordinator->run(PolishTask{PolishMode::concise}, 0ms);
    clock.advance(1s); // the copy brings nothing
    ASSERT_EQ(model().sourceText(), QString());
    model().onRetry();
    ASSERT_EQ(calls().size(), 2U);
    EXPECT_EQ(calls()[1]->task, calls()[0]->task);
}

TEST_F(TranslationCoordinatorTest, LeavesThePanelWhereItIsForARetryAndAPicker)
{
    const auto place = [] {
        const auto windows = QApplication::topLevelWidgets();
        const auto found = std::ranges::find_if(
            windows, [](const QWidget *window) { return window->windowType() == Qt::Tool && window->isVisible(); });
        return found == windows.end() ? QPoint(-1, -1) : (*found)->pos();
    };
    QCursor::setPos(100, 100);
    runTranslate(u"Hola"_s);
    EXPECT_EQ(place(), QPoint(112, 112));
    QCursor::setPos(300, 200);
    model().onRetry();
    EXPECT_EQ(place(), QPoint(112, 112));
    model().onLanguageChange(TargetLanguage::japanese);
    EXPECT_EQ(place(), QPoint(112, 112));
    runTranslate(u"Adiós"_s);
    EXPECT_EQ(place(), QPoint(312, 212));
}

TEST_F(TranslationCoordinatorTest, HasNothingToRetryAtFirst)
{
    model().onRetry();
    EXPECT_EQ(model().statusMessage(), u"Nothing to retry yet."_s);
    clock.advance(3000ms);
    EXPECT_FALSE(model().statusMessage());
}

TEST_F(TranslationCoordinatorTest, CopiesASuccessOnly)
{
    runTranslate(u"Hola"_s);
    model().onCopy();
    EXPECT_EQ(pasteboard.writes(), 0);
    EXPECT_FALSE(model().statusMessage());
    calls()[0]->succeed(u"你好"_s);
    EXPECT_EQ(pasteboard.writes(), 0);
    model().onCopy();
    EXPECT_EQ(pasteboard.text(), u"你好"_s);
    EXPECT_EQ(model().statusMessage(), u"Result copied to clipboard."_s);
}

TEST_F(TranslationCoordinatorTest, ClearsTheMessageThreeSecondsAfterTheFirstOfTwoCopies)
{
    runTranslate(u"Hola"_s);
    calls()[0]->succeed(u"你好"_s);
    model().onCopy();
    clock.advance(2000ms);
    model().onCopy();
    clock.advance(999ms);
    EXPECT_TRUE(model().statusMessage());
    clock.advance(1ms);
    EXPECT_FALSE(model().statusMessage());
    clock.advance(2000ms);
}

TEST_F(TranslationCoordinatorTest, LeavesAnotherMessageAlone)
{
    runTranslate(u"Hola"_s);
    calls()[0]->succeed(u"你好"_s);
    model().onCopy();
    model().setStatusMessage(u"another"_s);
    clock.advance(3000ms);
    EXPECT_EQ(model().statusMessage(), u"another"_s);
}

TEST_F(TranslationCoordinatorTest, CopiesTwiceAndKeepsTheMessageOfALaterThirdTime)
{
    runTranslate(u"Hola"_s);
    calls()[0]->succeed(u"你好"_s);
    model().onCopy();
    clock.advance(3000ms);
    EXPECT_FALSE(model().statusMessage());
    model().onCopy();
    clock.advance(2999ms);
    EXPECT_TRUE(model().statusMessage());
    clock.advance(1ms);
    EXPECT_FALSE(model().statusMessage());
    EXPECT_EQ(pasteboard.writes(), 2);
}

TEST_F(TranslationCoordinatorTest, StartsOverWithoutTheStatusMessage)
{
    runTranslate(u"Hola"_s);
    calls()[0]->succeed(u"你好"_s);
    model().onCopy();
    model().onRetry();
    EXPECT_FALSE(model().statusMessage());
    EXPECT_TRUE(std::holds_alternative<Model::Loading>(model().phase()));
    EXPECT_TRUE(calls()[0]->stop.stop_requested() || calls().size() == 2U);
}

TEST_F(TranslationCoordinatorTest, ReadsTheSelectionBeforeThePanelTakesAnyPlace)
{
    // The capture has to wait for a copy: until it is there nothing is shown.
    elements.focusSelectedText(QString());
    coordinator->run(coordinator->translateTask(), 0ms);
    EXPECT_FALSE(panel.isVisible());
    EXPECT_TRUE(panelWindow.panels().empty());
    clock.advance(1s);
    EXPECT_TRUE(panel.isVisible());
}

TEST_F(TranslationCoordinatorTest, ALateResultReplacesTheLoadingOfTheNewerJob)
{
    runTranslate(u"uno"_s);
    runTranslate(u"dos"_s);
    calls()[0]->succeed(u"one"_s);
    EXPECT_EQ(success(), u"one"_s);
    EXPECT_EQ(model().sourceText(), u"dos"_s);
    calls()[1]->succeed(u"two"_s);
    EXPECT_EQ(success(), u"two"_s);
}

TEST_F(TranslationCoordinatorTest, AScreenCaptureCancelsTheRequestAndAPickerTheCapture)
{
    runTranslate(u"Hola"_s);
    screen.captures = false;
    coordinator->ocrTranslate();
    EXPECT_TRUE(calls()[0]->stop.stop_requested());
    model().onLanguageChange(TargetLanguage::english);
    ASSERT_EQ(calls().size(), 2U);
    EXPECT_EQ(calls()[1]->text, u"Hola"_s) << "a cancelled capture changes nothing that is remembered";
}

TEST_F(TranslationCoordinatorTest, TranslatesWhatItRecognizes)
{
    screen.lines = QStringList{u"Hola"_s, u"mundo"_s};
    coordinator->ocrTranslate();
    ASSERT_EQ(calls().size(), 1U);
    EXPECT_EQ(calls()[0]->text, u"Hola\nmundo"_s);
    EXPECT_FALSE(QFile::exists(screen.path));
    EXPECT_EQ(trust.questions(), 0);
}

TEST_F(TranslationCoordinatorTest, ShowsNothingWhenTheCaptureIsCancelled)
{
    screen.captures = false;
    coordinator->ocrTranslate();
    EXPECT_FALSE(panel.isVisible());
    EXPECT_TRUE(calls().empty());
}

TEST_F(TranslationCoordinatorTest, SaysWhyTheCaptureFailed)
{
    screen.starts = false;
    coordinator->ocrTranslate();
    EXPECT_EQ(failure(), AppError(AppError::Kind::ocrCaptureFailed).errorDescription());
    screen.starts = true;
    screen.lines = QStringList{u" "_s};
    coordinator->ocrTranslate();
    EXPECT_EQ(failure(), AppError(AppError::Kind::ocrNoTextFound).errorDescription());
    EXPECT_FALSE(QFile::exists(screen.path));
}

TEST_F(TranslationCoordinatorTest, CancelsTheCurrentTaskBeforeTheProgramEnds)
{
    coordinator->cancelCurrentTask();
    runTranslate(u"Hola"_s);
    EXPECT_FALSE(calls()[0]->stop.stop_requested());
    coordinator->cancelCurrentTask();
    EXPECT_TRUE(calls()[0]->stop.stop_requested());
}

TEST_F(TranslationCoordinatorTest, EndsWithoutEffectWhenItIsGone)
{
    elements.focusSelectedText(u"Hola"_s);
    coordinator->run(coordinator->translateTask(), 0ms);
    coordinator->run(coordinator->polishTask(), TranslationCoordinator::menuDelay);
    coordinator.reset();
    clock.advance(200ms);
    calls()[0]->succeed(u"你好"_s);
    EXPECT_EQ(calls().size(), 1U);
    EXPECT_TRUE(std::holds_alternative<Model::Loading>(model().phase()));
    model().onRetry();
    model().onCopy();
    EXPECT_FALSE(model().statusMessage());
}

} // namespace
} // namespace orvesa
