#include "App/AppDelegate.h"

#include "App/ApplicationOnFakes.h"
#include "Core/HotKeyRecordingState.h"
#include "Core/KeychainService.h"
#include "fakes/FakeHotKeys.h"
#include "fakes/FakeKeyMonitor.h"
#include "fakes/FakeKeyStore.h"
#include "fakes/FakeTray.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

QStringList *capturedLog = nullptr;

void captureLog(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (capturedLog != nullptr) {
        capturedLog->append(message);
    }
}

class AppDelegateTest : public testing::Test, protected ApplicationOnFakes {
protected:
    AppDelegateTest()
    {
        capturedLog = &log;
        m_earlier = qInstallMessageHandler(captureLog);
    }

    ~AppDelegateTest() override
    {
        qInstallMessageHandler(m_earlier);
        capturedLog = nullptr;
    }

    static void settle() { QCoreApplication::sendPostedEvents(); }

    static CustomPrompt prompt(const QString &name, const KeyCombo &combo)
    {
        CustomPrompt result;
        result.name = name;
        result.promptTemplate = u"Do"_s;
        result.hotKey = combo;
        return result;
    }

    QStringList log;
    FakeHotKeys hotKeys;
    FakeKeyStore keyStore;
    KeychainService keychain{keyStore, u"service"_s, {}};
    HotKeyRecordingState recording;
    FakeKeyMonitor keyMonitor;
    FakeTray tray;
    AppDelegate delegate{
        {*coordinator, settings, keychain, providers, hotKeys, recording, keyMonitor, trust, workspace, tray}};

private:
    QtMessageHandler m_earlier = nullptr;
};

const KeyCombo controlOptionS{1, CarbonModifier::control | CarbonModifier::option, u"S"_s};
const KeyCombo optionD{2, CarbonModifier::option, u"D"_s};

TEST_F(AppDelegateTest, RegistersTheThreeActionsAndRunsThem)
{
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(hotKeys.liveRegistrations(), 3U);
    elements.focusSelectedText(u"Hola"_s);
    EXPECT_EQ(hotKeys.press(2, CarbonModifier::option), HotKeyStatus::noErr);
    // The press only schedules: the desktop's event dispatch is not the place to work in.
    EXPECT_TRUE(calls().empty());
    settle();
    ASSERT_EQ(calls().size(), 1U);
    EXPECT_EQ(calls()[0]->task, coordinator->translateTask());
    hotKeys.press(1, CarbonModifier::option);
    settle();
    EXPECT_EQ(calls()[1]->task, coordinator->polishTask());
}

TEST_F(AppDelegateTest, RegistersPromptsByTheirPlace)
{
    CustomPrompt without = prompt(u"Without"_s, optionD);
    without.hotKey.reset();
    settings.setCustomPrompts({without, prompt(u"  "_s, controlOptionS)});
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(hotKeys.liveRegistrations(), 4U);
    elements.focusSelectedText(u"Hola"_s);
    EXPECT_EQ(hotKeys.fire({HotKeyService::signature, 1001}), HotKeyStatus::noErr);
    settle();
    ASSERT_EQ(calls().size(), 1U);
    EXPECT_EQ(calls()[0]->task, AITask(CustomTask{u"Untitled Prompt"_s, u"Do"_s}));
}

TEST_F(AppDelegateTest, RegistersFromScratchWhenShortcutsOrPromptsChange)
{
    delegate.applicationDidFinishLaunching();
    settings.setCustomPrompts({prompt(u"One"_s, controlOptionS)});
    settle();
    EXPECT_EQ(hotKeys.liveRegistrations(), 4U);
    const std::size_t taken = hotKeys.unregistered().size();
    settings.setCustomPrompts(settings.customPrompts());
    settle();
    EXPECT_EQ(hotKeys.unregistered().size(), taken);
    settings.setCustomPrompts({});
    settle();
    EXPECT_EQ(hotKeys.liveRegistrations(), 3U);
    settings.setCombo({35, CarbonModifier::option, u"P"_s}, HotKeyAction::translateSelection);
    settle();
    EXPECT_FALSE(hotKeys.press(2, CarbonModifier::option));
    EXPECT_TRUE(hotKeys.press(35, CarbonModifier::option));
}

TEST_F(AppDelegateTest, RegistersAllAnewWhenOnlyAPromptsTextChanges)
{
    std::vector<CustomPrompt> prompts{prompt(u"One"_s, controlOptionS)};
    settings.setCustomPrompts(prompts);
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(hotKeys.unregistered().empty());
    prompts.front().promptTemplate = u"Otherwise"_s;
    settings.setCustomPrompts(prompts);
    settle();
    EXPECT_EQ(hotKeys.unregistered().size(), 4U);
    EXPECT_EQ(hotKeys.liveRegistrations(), 4U);
    elements.focusSelectedText(u"Hola"_s);
    EXPECT_EQ(hotKeys.fire({HotKeyService::signature, 1000}), HotKeyStatus::noErr);
    settle();
    ASSERT_EQ(calls().size(), 1U);
    EXPECT_EQ(calls()[0]->task, AITask(CustomTask{u"One"_s, u"Otherwise"_s}));
    // A prompt that keeps its place and loses its shortcut gives it back.
    prompts.front().hotKey.reset();
    settings.setCustomPrompts(prompts);
    settle();
    EXPECT_EQ(hotKeys.liveRegistrations(), 3U);
    EXPECT_FALSE(hotKeys.press(controlOptionS.keyCode, controlOptionS.carbonModifiers));
}

TEST_F(AppDelegateTest, LogsAShortcutThatTheSystemRefusesAndGoesOn)
{
    hotKeys.takeByAnother(2, CarbonModifier::option);
    settings.setCustomPrompts({prompt(u"Taken"_s, optionD), prompt(u"Free"_s, controlOptionS)});
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(hotKeys.liveRegistrations(), 3U);
    EXPECT_TRUE(log.contains(u"OrvesaTranslate: failed to register hotkey ⌥D for Translate Selection: "
                             u"Failed to register global hotkey (status: -9878)"_s));
    EXPECT_TRUE(log.contains(u"OrvesaTranslate: failed to register hotkey ⌥D for prompt Taken: "
                             u"Failed to register global hotkey (status: -9878)"_s));
}

TEST_F(AppDelegateTest, LogsOneLineWhateverANameHolds)
{
    hotKeys.takeByAnother(2, CarbonModifier::option);
    settings.setCustomPrompts({prompt(u"Taken\nOrvesaTranslate: \x1b[2Jforged"_s, optionD)});
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(log.contains(u"OrvesaTranslate: failed to register hotkey ⌥D for prompt "
                             u"Taken\uFFFDOrvesaTranslate: \uFFFD[2Jforged: "
                             u"Failed to register global hotkey (status: -9878)"_s))
        << log.join(u'|').toStdString();
    delegate.performNamed(u"no\nsuch"_s);
    EXPECT_EQ(log.constLast(), u"OrvesaTranslate: unknown action no\uFFFDsuch"_s);
}

TEST_F(AppDelegateTest, AsksForTrustAtLaunchWhenItIsMissing)
{
    trust.setTrust(FakeAccessibilityTrust::Trust::missing);
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(trust.requests(), 1);
}

TEST_F(AppDelegateTest, IgnoresShortcutsWhileOneIsRecorded)
{
    delegate.applicationDidFinishLaunching();
    elements.focusSelectedText(u"Hola"_s);
    std::vector<KeyCombo> taken;
    QObject::connect(&recording, &HotKeyRecordingState::shortcutTaken, &recording,
                     [&taken](const KeyCombo &combo) { taken.push_back(combo); });
    recording.beginRecording();
    EXPECT_EQ(hotKeys.press(2, CarbonModifier::option), HotKeyStatus::noErr);
    settle();
    EXPECT_TRUE(calls().empty());
    EXPECT_EQ(taken, std::vector<KeyCombo>{optionD}) << "the recorder's candidate";
    recording.endRecording();
    hotKeys.press(2, CarbonModifier::option);
    settle();
    EXPECT_EQ(calls().size(), 1U);
    EXPECT_EQ(taken.size(), 1U);
}

TEST_F(AppDelegateTest, SaysOnceThatThereIsNoTrayAndShowsItsIconWhenOneComes)
{
    tray.setAvailable(false);
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(log.filter(u"no tray"_s).size(), 1);
    EXPECT_TRUE(tray.isAwaited());
    EXPECT_EQ(hotKeys.liveRegistrations(), 3U);
    tray.appear();
    EXPECT_FALSE(tray.isAwaited());
    EXPECT_EQ(log.filter(u"no tray"_s).size(), 1);
}

TEST_F(AppDelegateTest, PerformsPromptsByNameOrIdentifier)
{
    CustomPrompt first = prompt(u" Fix: it "_s, controlOptionS);
    CustomPrompt second = prompt(u"Other"_s, optionD);
    second.promptTemplate = u"Do more"_s;
    settings.setCustomPrompts({first, second});
    elements.focusSelectedText(u"Hola"_s);
    delegate.performNamed(u"prompt:Fix: it"_s);
    ASSERT_EQ(calls().size(), 1U);
    EXPECT_EQ(calls()[0]->task, AITask(CustomTask{u"Fix: it"_s, u"Do"_s}));
    delegate.performNamed(u"prompt:"_s + second.id.toString(QUuid::WithoutBraces));
    ASSERT_EQ(calls().size(), 2U);
    EXPECT_EQ(calls()[1]->task, AITask(CustomTask{u"Other"_s, u"Do more"_s}));
    delegate.performNamed(u"prompt:Nothing"_s);
    EXPECT_EQ(calls().size(), 2U);
    EXPECT_TRUE(log.contains(u"OrvesaTranslate: unknown action prompt:Nothing"_s));
}

TEST_F(AppDelegateTest, SettlesOnTheLastOfManyChanges)
{
    delegate.applicationDidFinishLaunching();
    for (quint32 change = 0; change < 50; ++change) {
        settings.setCombo({change % 2 == 0 ? 35U : 31U, CarbonModifier::option, u"P"_s},
                          HotKeyAction::translateSelection);
        if (change % 7 == 0) {
            settle();
        }
    }
    settle();
    EXPECT_EQ(hotKeys.liveRegistrations(), 3U);
    EXPECT_TRUE(hotKeys.press(31, CarbonModifier::option));
    EXPECT_FALSE(hotKeys.press(35, CarbonModifier::option));
}

TEST_F(AppDelegateTest, PerformsActionsByName)
{
    elements.focusSelectedText(u"Hola"_s);
    delegate.performNamed(u"polishSelection"_s);
    EXPECT_EQ(calls().size(), 1U);
    delegate.performNamed(u"polishselection"_s);
    EXPECT_EQ(calls().size(), 1U);
    EXPECT_TRUE(log.contains(u"OrvesaTranslate: unknown action polishselection"_s));
}

} // namespace
} // namespace orvesa
