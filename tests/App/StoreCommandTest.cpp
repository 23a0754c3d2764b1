// The commands "settings" and "key": what their words mean and what they do.

#include "App/KeyCommand.h"
#include "App/SettingsCommand.h"
#include "Core/KeychainService.h"
#include "Core/SettingsStore.h"
#include "fakes/Awaited.h"
#include "fakes/FakeKeyStore.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/InterfaceLanguage.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

using CommandLine::ExitCode;
using CommandLine::Key;
using CommandLine::Request;
using CommandLine::Settings;
using CommandLine::UsageError;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using Write = FakeUserDefaults::Write;

bool isUsageError(const QStringList &arguments)
{
    return std::holds_alternative<UsageError>(CommandLine::parse(arguments));
}

/// What a command ended with and printed.
struct Outcome {
    ExitCode code = ExitCode::success;
    std::string output;
    std::string errors;
};

Outcome printed(const std::function<ExitCode()> &command)
{
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    Outcome outcome;
    outcome.code = command();
    outcome.output = ::testing::internal::GetCapturedStdout();
    outcome.errors = ::testing::internal::GetCapturedStderr();
    return outcome;
}

TEST(StoreCommandLine, ReadsTheWordsOfSettings)
{
    using Action = Settings::Action;
    const auto parsed = [](const QStringList &words) { return CommandLine::parse(QStringList{u"settings"_s} + words); };
    EXPECT_EQ(parsed({u"list"_s}), Request(Settings{Action::list, {}, {}}));
    EXPECT_EQ(parsed({u"get"_s, u"settings.theme"_s}), Request(Settings{Action::get, u"settings.theme"_s, {}}));
    EXPECT_EQ(parsed({u"reset"_s, u"settings.theme"_s}), Request(Settings{Action::reset, u"settings.theme"_s, {}}));
    EXPECT_EQ(parsed({u"set"_s, u"settings.targetLanguage"_s, u"Traditional Chinese"_s}),
              Request(Settings{Action::set, u"settings.targetLanguage"_s, u"Traditional Chinese"_s}));
    EXPECT_EQ(parsed({u"set"_s, u"settings.model.openAI"_s, u"--"_s, u"-x"_s}),
              Request(Settings{Action::set, u"settings.model.openAI"_s, u"-x"_s}));
    EXPECT_EQ(parsed({u"set"_s, u"settings.model.openAI"_s, u""_s}),
              Request(Settings{Action::set, u"settings.model.openAI"_s, u""_s}));
}

TEST(StoreCommandLine, ReadsTheWordsOfKey)
{
    using Action = Key::Action;
    EXPECT_EQ(CommandLine::parse({u"key"_s, u"status"_s}), Request(Key{Action::status, std::nullopt}));
    EXPECT_EQ(CommandLine::parse({u"key"_s, u"set"_s, u"anthropic"_s}),
              Request(Key{Action::set, AIProviderType::anthropic}));
    EXPECT_EQ(CommandLine::parse({u"key"_s, u"clear"_s, u"xAI"_s}), Request(Key{Action::clear, AIProviderType::xAI}));
}

TEST(StoreCommandLine, RefusesOtherWords)
{
    for (const QStringList &words : {QStringList{},
                                     {u"list"_s, u"x"_s},
                                     {u"get"_s},
                                     {u"get"_s, u"a"_s, u"b"_s},
                                     {u"set"_s, u"a"_s},
                                     {u"set"_s, u"a"_s, u"b"_s, u"c"_s},
                                     {u"reset"_s},
                                     {u"List"_s},
                                     {u"get"_s, u"a"_s, u"--to"_s, u"x"_s}}) {
        EXPECT_TRUE(isUsageError(QStringList{u"settings"_s} + words)) << words.join(u' ').toStdString();
    }
    for (const QStringList &words : {QStringList{},
                                     {u"status"_s, u"openAI"_s},
                                     {u"set"_s},
                                     {u"set"_s, u"OpenAI"_s},
                                     {u"set"_s, u"openAI"_s, u"sk-typed"_s},
                                     {u"clear"_s},
                                     {u"get"_s, u"openAI"_s},
                                     {u"status"_s, u"--provider"_s, u"openAI"_s}}) {
        EXPECT_TRUE(isUsageError(QStringList{u"key"_s} + words)) << words.join(u' ').toStdString();
    }
}

TEST(StoreCommandLine, DoesNotRepeatAKeyThatSomebodyTyped)
{
    const Request request = CommandLine::parse({u"key"_s, u"set"_s, u"openAI"_s, u"sk-typed"_s});
    ASSERT_TRUE(std::holds_alternative<UsageError>(request));
    EXPECT_FALSE(std::get<UsageError>(request).message.contains(u"sk-typed"_s));
}

class SettingsCommandTest : public ::testing::Test {
protected:
    Outcome run(Settings::Action action, const QString &key = {}, const QString &value = {})
    {
        const SettingsCommand command(m_defaults, m_languages);
        return printed([&] { return command.run({action, key, value}); });
    }
    Outcome get(const QString &key) { return run(Settings::Action::get, key); }
    Outcome set(const QString &key, const QString &value) { return run(Settings::Action::set, key, value); }
    Outcome reset(const QString &key) { return run(Settings::Action::reset, key); }

    void expectRefused(const QString &key, const QString &value)
    {
        m_defaults.forgetCalls();
        const Outcome outcome = set(key, value);
        EXPECT_EQ(outcome.code, ExitCode::usage) << key.toStdString() << ' ' << value.toStdString();
        EXPECT_THAT(outcome.errors, HasSubstr(key.toStdString() + " takes "));
        EXPECT_THAT(outcome.output, IsEmpty());
        EXPECT_THAT(m_defaults.writes(), IsEmpty());
    }

    InterfaceLanguage m_interfaceLanguage{AppLanguage::english};
    FakeUserDefaults m_defaults;
    FakePreferredLanguages m_languages{{u"ja"_s}};
};

TEST_F(SettingsCommandTest, ListsEveryPreferenceWithItsEffectiveValue)
{
    m_defaults.prepare(u"settings.theme"_s, u"ocean"_s);
    m_defaults.prepare(u"settings.defaultProvider"_s, u"OpenAI"_s);
    m_defaults.prepare(u"settings.model.xAI"_s, u"a\nb"_s);
    m_defaults.prepare(u"settings.unknown"_s, u"x"_s);
    const Outcome outcome = run(Settings::Action::list);
    EXPECT_EQ(outcome.code, ExitCode::success);
    EXPECT_EQ(outcome.output, "settings.defaultProvider=gemini\n"
                              "settings.targetLanguage=Traditional Chinese\n"
                              "settings.polishMode=businessJapanese\n"
                              "settings.thinkingEnabled=false\n"
                              "settings.hotKeys={}\n"
                              "settings.appLanguage=ja\n"
                              "settings.theme=ocean\n"
                              "settings.customPrompts=[]\n"
                              "settings.model.openAI=gpt-5.4-mini\n"
                              "settings.model.gemini=gemini-3.1-flash-lite\n"
                              "settings.model.anthropic=claude-sonnet-5\n"
                              "settings.model.xAI=a\\nb\n");
    EXPECT_THAT(m_defaults.writes(), IsEmpty());
}

TEST_F(SettingsCommandTest, SetsWhatTheKeyAllowsInItsStoredForm)
{
    const std::pair<QString, DefaultsValue> values[] = {
        {u"settings.defaultProvider"_s, u"xAI"_s}, {u"settings.targetLanguage"_s, u"English"_s},
        {u"settings.polishMode"_s, u"concise"_s},  {u"settings.appLanguage"_s, u"zh-Hant"_s},
        {u"settings.theme"_s, u"graphite"_s},      {u"settings.model.gemini"_s, u"my model"_s},
    };
    for (const auto &[key, value] : values) {
        EXPECT_EQ(set(key, std::get<QString>(value)).code, ExitCode::success) << key.toStdString();
        EXPECT_EQ(m_defaults.value(key), value);
        EXPECT_EQ(get(key).output, std::get<QString>(value).toStdString() + "\n");
    }
    EXPECT_EQ(set(u"settings.thinkingEnabled"_s, u"true"_s).code, ExitCode::success);
    EXPECT_EQ(m_defaults.value(u"settings.thinkingEnabled"_s), DefaultsValue(true));
    EXPECT_EQ(set(u"settings.thinkingEnabled"_s, u"false"_s).code, ExitCode::success);
    EXPECT_EQ(m_defaults.value(u"settings.thinkingEnabled"_s), DefaultsValue(false));
    EXPECT_EQ(set(u"settings.model.openAI"_s, u"  m \n"_s).code, ExitCode::success);
    EXPECT_EQ(m_defaults.value(u"settings.model.openAI"_s), DefaultsValue(u"m"_s));
}

TEST_F(SettingsCommandTest, SetsShortcutsAndPromptsFromTheirJSON)
{
    const QString hotKeys = u"{\"polishSelection\": {\"keyCode\":35,\"carbonModifiers\":2304,\"keyLabel\":\"P\"}}"_s;
    EXPECT_EQ(set(u"settings.hotKeys"_s, hotKeys).code, ExitCode::success);
    EXPECT_EQ(m_defaults.value(u"settings.hotKeys"_s),
              DefaultsValue(QByteArray(R"({"polishSelection":{"keyCode":35,"carbonModifiers":2304,"keyLabel":"P"}})")));
    const QString prompts = u"[{\"id\":\"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9\",\"name\":\"名\",\"template\":\"t\"}]"_s;
    EXPECT_EQ(set(u"settings.customPrompts"_s, prompts).code, ExitCode::success);
    const SettingsStore store(m_defaults, m_languages);
    EXPECT_EQ(store.combo(HotKeyAction::polishSelection), (KeyCombo{35, 2304, u"P"_s}));
    ASSERT_EQ(store.customPrompts().size(), 1U);
    EXPECT_EQ(store.customPrompts().front().name, u"名"_s);
    EXPECT_EQ(get(u"settings.customPrompts"_s).output, prompts.toStdString() + "\n");
    EXPECT_EQ(set(u"settings.hotKeys"_s, u"{}"_s).code, ExitCode::success);
    EXPECT_EQ(get(u"settings.hotKeys"_s).output, "{}\n");
}

TEST_F(SettingsCommandTest, RefusesWhatTheKeyDoesNotAllowAndChangesNothing)
{
    expectRefused(u"settings.defaultProvider"_s, u"OpenAI"_s);
    expectRefused(u"settings.targetLanguage"_s, u""_s);
    expectRefused(u"settings.polishMode"_s, u"concise "_s);
    expectRefused(u"settings.thinkingEnabled"_s, u"1"_s);
    expectRefused(u"settings.appLanguage"_s, u"fr"_s);
    expectRefused(u"settings.theme"_s, u"Violet"_s);
    expectRefused(u"settings.model.openAI"_s, u" \n "_s);
    expectRefused(u"settings.model.openAI"_s, u"a\nb"_s);
    for (const char *json : {"", "x", "[]", "null", R"({"translateSelection":5})",
                             R"({"other":{"keyCode":35,"carbonModifiers":2304,"keyLabel":"P"}})",
                             R"({"translateSelection":{"keyCode":2,"carbonModifiers":0,"keyLabel":"D"}})",
                             R"({"translateSelection":{"keyCode":2,"carbonModifiers":512,"keyLabel":"D"}})",
                             R"({"translateSelection":{"keyCode":2,"carbonModifiers":2049,"keyLabel":"D"}})",
                             R"({"translateSelection":{"keyCode":2,"carbonModifiers":2048,"keyLabel":""}})"}) {
        expectRefused(u"settings.hotKeys"_s, QString::fromUtf8(json));
    }
    for (const char *json : {"", "{}", "[1]", R"([{"name":"n","template":"t"}])",
                             R"([{"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"n","template":"t",)"
                             R"("hotKey":{"keyCode":2,"carbonModifiers":0,"keyLabel":"D"}}])"}) {
        expectRefused(u"settings.customPrompts"_s, QString::fromUtf8(json));
    }
}

TEST_F(SettingsCommandTest, AllowsAFunctionKeyByItself)
{
    EXPECT_EQ(
        set(u"settings.hotKeys"_s, u"{\"ocrTranslate\":{\"keyCode\":96,\"carbonModifiers\":0,\"keyLabel\":\"F5\"}}"_s)
            .code,
        ExitCode::success);
}

TEST_F(SettingsCommandTest, ResetsToTheDefault)
{
    m_defaults.prepare(u"settings.theme"_s, u"ocean"_s);
    EXPECT_EQ(reset(u"settings.theme"_s).code, ExitCode::success);
    EXPECT_THAT(m_defaults.writes(), ElementsAre(Write{u"settings.theme"_s, std::nullopt}));
    EXPECT_EQ(get(u"settings.theme"_s).output, "violet\n");
    EXPECT_EQ(reset(u"settings.theme"_s).code, ExitCode::success) << "also when nothing is stored";
}

TEST_F(SettingsCommandTest, KnowsNoOtherKeys)
{
    m_defaults.prepare(u"migration.copiedFromLegacyDomain"_s, true);
    for (const QString &key : {u"settings.Theme"_s, u"theme"_s, u""_s, u"settings.model.OpenAI"_s, u"openai_api_key"_s,
                               u"migration.copiedFromLegacyDomain"_s}) {
        EXPECT_EQ(get(key).code, ExitCode::usage) << key.toStdString();
        EXPECT_EQ(set(key, u"violet"_s).code, ExitCode::usage);
        EXPECT_EQ(reset(key).code, ExitCode::usage);
    }
    EXPECT_THAT(m_defaults.writes(), IsEmpty());
}

TEST_F(SettingsCommandTest, FailsWhenTheChangeCannotBeWritten)
{
    m_defaults.refuseWrites();
    const Outcome outcome = set(u"settings.theme"_s, u"ocean"_s);
    EXPECT_EQ(outcome.code, ExitCode::failure);
    EXPECT_EQ(outcome.errors, "The preferences could not be written.\n");
    EXPECT_EQ(reset(u"settings.theme"_s).code, ExitCode::failure);
}

class KeyCommandTest : public ::testing::Test {
protected:
    Outcome run(Key::Action action, std::optional<AIProviderType> provider = std::nullopt)
    {
        const KeyCommand command(m_keychain, [this](const QString &question) {
            m_question = question;
            return m_input;
        });
        return printed([&] { return awaited(command.run({action, provider})); });
    }

    InterfaceLanguage m_interfaceLanguage{AppLanguage::english};
    FakeKeyStore m_store;
    KeychainService m_keychain{m_store, u"app"_s, {u"older"_s}};
    std::optional<QString> m_input;
    QString m_question;
};

TEST_F(KeyCommandTest, KeepsTheTrimmedKey)
{
    m_input = u"  sk-secret \r\n"_s;
    const Outcome outcome = run(Key::Action::set, AIProviderType::openAI);
    EXPECT_EQ(outcome.code, ExitCode::success);
    EXPECT_EQ(outcome.output + outcome.errors, "");
    EXPECT_EQ(m_store.item(u"app"_s, u"openai_api_key"_s), QByteArray("sk-secret"));
    EXPECT_EQ(m_question, u"API key for OpenAI: "_s);
}

TEST_F(KeyCommandTest, RefusesWhatIsNoKeyWithoutRepeatingIt)
{
    for (const std::optional<QString> &input : {std::optional<QString>(), std::optional(u""_s), std::optional(u" \n"_s),
                                                std::optional(u"sk-one\nsk-two"_s)}) {
        m_input = input;
        const Outcome outcome = run(Key::Action::set, AIProviderType::gemini);
        EXPECT_EQ(outcome.code, ExitCode::failure);
        EXPECT_THAT(outcome.errors, Not(HasSubstr("sk-")));
        EXPECT_THAT(outcome.errors, Not(IsEmpty()));
    }
    EXPECT_EQ(m_store.itemCount(), 0U);
}

TEST_F(KeyCommandTest, SaysWhyAKeyWasNotKept)
{
    m_input = u"sk-secret"_s;
    m_store.setStatus(FakeKeyStore::Operation::update, KeyStoreStatus::notAvailable);
    const Outcome outcome = run(Key::Action::set, AIProviderType::openAI);
    EXPECT_EQ(outcome.code, ExitCode::failure);
    EXPECT_EQ(outcome.errors, "Failed to save key: Keychain error (status: -25291)\n");
}

TEST_F(KeyCommandTest, RemovesAKey)
{
    m_store.setItem(u"app"_s, u"xai_api_key"_s, "sk");
    EXPECT_EQ(run(Key::Action::clear, AIProviderType::xAI).code, ExitCode::success);
    EXPECT_EQ(m_store.itemCount(), 0U);
    EXPECT_EQ(run(Key::Action::clear, AIProviderType::xAI).code, ExitCode::success) << "a missing one too";
    m_store.setStatus(FakeKeyStore::Operation::remove, KeyStoreStatus::userCanceled);
    const Outcome outcome = run(Key::Action::clear, AIProviderType::xAI);
    EXPECT_EQ(outcome.code, ExitCode::failure);
    EXPECT_EQ(outcome.errors, "Failed to remove key: Keychain error (status: -128)\n");
}

TEST_F(KeyCommandTest, SaysForWhichServicesThereIsAKey)
{
    m_store.setItem(u"app"_s, u"openai_api_key"_s, "sk-secret");
    m_store.setItem(u"app"_s, u"gemini_api_key"_s, "");
    m_store.setItem(u"older"_s, u"xai_api_key"_s, "sk-older");
    const Outcome outcome = run(Key::Action::status);
    EXPECT_EQ(outcome.code, ExitCode::success);
    EXPECT_EQ(outcome.output, "openAI=stored\ngemini=missing\nanthropic=missing\nxAI=stored\n");
}

TEST_F(KeyCommandTest, CallsNoKeyMissingWhereTheStoreCannotBeAsked)
{
    m_store.setStatus(FakeKeyStore::Operation::copyMatching, u"gemini_api_key"_s, KeyStoreStatus::userCanceled);
    const Outcome outcome = run(Key::Action::status);
    EXPECT_EQ(outcome.code, ExitCode::failure);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "The key store could not be asked: Keychain error (status: -128). \"orvesa-translate "
                              "doctor\" says why.\n");
    EXPECT_EQ(m_store.calls().back().account, u"gemini_api_key"_s) << "who has declined to unlock it is not asked again";
}

} // namespace
} // namespace orvesa
