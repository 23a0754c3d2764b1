// The product's command line, without a display, over real HTTP, with the desktop's own key store.

#include "desktop/ProgramFixture.h"

#include <utility>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using service::ServiceResponse;

class ProgramCommand : public ProgramFixture {
protected:
    ProcessResult command(const QStringList &arguments, const QByteArray &input = {})
    {
        return program->run(arguments, desktop->withoutDisplay(), input);
    }
};

TEST_F(ProgramCommand, TranslatePrintsTheTrimmedAnswerOnly)
{
    setUp();
    service.setScript({answer(u"\n  こんにちは \n\n"_s)});
    const ProcessResult result =
        command({u"translate"_s, u"--to"_s, u"Japanese"_s, u"--provider"_s, u"openAI"_s}, "Hello\n");
    EXPECT_EQ(result.exitCode, 0) << result.standardError.constData();
    EXPECT_EQ(result.standardOutput, QByteArray("こんにちは\n"));
    EXPECT_TRUE(result.standardError.isEmpty()) << result.standardError.constData();
    ASSERT_EQ(service.requests().size(), 1U);
    EXPECT_EQ(service.requests().front().header("authorization"), "Bearer " + key);
    EXPECT_TRUE(service.requests().front().body.contains("Japanese"));
}

TEST_F(ProgramCommand, PolishTakesItsTextFromTheArguments)
{
    setUp();
    service.setScript({answer(u"Short."_s)});
    const ProcessResult result = command({u"polish"_s, u"--mode"_s, u"concise"_s, u"a"_s, u"long"_s, u"text"_s});
    EXPECT_EQ(result.exitCode, 0) << result.standardError.constData();
    EXPECT_EQ(result.standardOutput, "Short.\n");
    ASSERT_EQ(service.requests().size(), 1U);
    EXPECT_TRUE(service.requests().front().body.contains("a long text"));
}

TEST_F(ProgramCommand, FailuresEndWithOneAndSayWhy)
{
    setUp();
    service.setScript({ServiceResponse::text(503, "busy")});
    const ProcessResult refused = command({u"translate"_s}, "Hello");
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.standardOutput.isEmpty());
    EXPECT_TRUE(refused.standardError.startsWith("API request failed: ")) << refused.standardError.constData();
    EXPECT_TRUE(refused.standardError.contains("busy"));

    const ProcessResult empty = command({u"translate"_s}, " \n");
    EXPECT_EQ(empty.exitCode, 1);
    EXPECT_EQ(empty.standardError, "No text is selected. Select some text in any app and try again.\n");
    EXPECT_EQ(service.requests().size(), 1U);
}

TEST_F(ProgramCommand, WrongUsageEndsWithTwo)
{
    setUp();
    for (const QStringList &arguments :
         {QStringList{u"no-such-command"_s}, QStringList{u"translate"_s, u"--no-such-option"_s, u"text"_s},
          QStringList{u"polish"_s, u"--mode"_s, u"loud"_s, u"text"_s},
          QStringList{u"translate"_s, u"--provider"_s, u"nobody"_s, u"text"_s},
          QStringList{u"settings"_s, u"set"_s, u"settings.theme"_s, u"purple"_s},
          QStringList{u"--perform"_s, u"translateselection"_s}}) {
        const ProcessResult result = command(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments.join(u' ').toStdString();
        EXPECT_FALSE(result.standardError.isEmpty());
        EXPECT_TRUE(result.standardOutput.isEmpty());
    }
    EXPECT_TRUE(service.requests().empty());
}

TEST_F(ProgramCommand, HelpAndVersionNeedNothing)
{
    DesktopOptions options;
    options.windowManager = WindowManager::none;
    options.sessionBus = SessionBus::none;
    setUp(options);
    EXPECT_EQ(command({u"--version"_s}).exitCode, 0);
    const ProcessResult help = command({u"--help"_s});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.standardOutput.contains("translate"));
}

TEST_F(ProgramCommand, WithoutAKeyStoreItSaysThatTheKeyIsMissing)
{
    for (const KeyStore store : {KeyStore::absent, KeyStore::locked}) {
        DesktopOptions options;
        options.keyStore = store;
        options.windowManager = WindowManager::none;
        setUp(options);
        const ProcessResult result = command({u"translate"_s}, "Hello");
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(QString::fromUtf8(result.standardError.trimmed()), missingKeyMessage);
    }
    DesktopOptions options;
    options.sessionBus = SessionBus::none;
    options.windowManager = WindowManager::none;
    setUp(options);
    const ProcessResult result = command({u"translate"_s}, "Hello");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(QString::fromUtf8(result.standardError.trimmed()), missingKeyMessage);
}

TEST_F(ProgramCommand, WithoutAPlaceForTheAnswerItFails)
{
    setUp();
    // With its line break as long as what the event loop's own descriptor, which is opened first, takes for a sign.
    service.setScript({answer(u"seven c"_s)});
    TranslateProgram shell(*desktop, u"/bin/sh"_s);
    shell.setService(service.address());
    // Whatever the program opens first would get the place, and the answer.
    const ProcessResult result = shell.run(
        {u"-c"_s, u"exec \"$0\" translate Hello >&-"_s, TranslateProgram::pathBeside()}, desktop->withoutDisplay());
    EXPECT_EQ(result.exitCode, 1) << result.standardError.constData();
    EXPECT_EQ(service.requests().size(), 1U);
}

TEST_F(ProgramCommand, NoSwitchOfALibraryShowsTheKey)
{
    setUp();
    service.setScript({answer(u"ok"_s)});
    for (const auto &[name, value] : {std::pair(u"QT_LOGGING_RULES"_s, u"*=true"_s),
                                      {u"QDBUS_DEBUG"_s, u"1"_s},
                                      {u"G_MESSAGES_DEBUG"_s, u"all"_s},
                                      {u"G_DBUS_DEBUG"_s, u"all"_s}}) {
        program->setVariable(name, value);
    }
    const ProcessResult result = command({u"translate"_s}, "Hello");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.standardOutput.endsWith("ok\n"));
    EXPECT_GT((result.standardOutput + result.standardError).size(), 1000) << "the switches work";
    EXPECT_FALSE((result.standardOutput + result.standardError).contains(key));
    EXPECT_FALSE((result.standardOutput + result.standardError).contains(key.toBase64()));
    EXPECT_FALSE((result.standardOutput + result.standardError).contains(key.toHex()));
}

} // namespace orvesa::desktop
