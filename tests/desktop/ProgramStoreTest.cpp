// Preferences and keys of the real program: its commands, what a running utility hears of them, what it takes over from
// an earlier release, and what a crash of it would leave.

#include "desktop/ProgramFixture.h"

#include <QFile>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class ProgramStore : public ProgramFixture {
protected:
    /// Runs a command on the preferences as they are. (The fixture's own way would write its own first.)
    ProcessResult command(const QStringList &arguments, const QByteArray &input = {})
    {
        return desktop->runToEnd(TranslateProgram::pathBeside(), arguments, desktop->withoutDisplay(), input);
    }
    [[nodiscard]] QString preferencesPath(const QString &identifier = TranslateProgram::identifier()) const
    {
        return desktop->folders().configuration() + u'/' + identifier + u".conf"_s;
    }
    [[nodiscard]] static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
    }
    static DesktopOptions plain()
    {
        DesktopOptions options;
        options.windowManager = WindowManager::none;
        options.accessibility = Accessibility::none;
        return options;
    }
};

TEST_F(ProgramStore, KeepsAKeyFromStandardInputAndNeverShowsIt)
{
    setUp(plain());
    program->setService(service.address());
    desktop->keyStore().remove(TranslateProgram::identifier(), u"openai_api_key"_s);
    EXPECT_EQ(command({u"key"_s, u"status"_s}).standardOutput,
              "openAI=missing\ngemini=missing\nanthropic=missing\nxAI=missing\n");
    const ProcessResult stored = command({u"key"_s, u"set"_s, u"openAI"_s}, key + '\n');
    EXPECT_EQ(stored.exitCode, 0);
    EXPECT_TRUE((stored.standardOutput + stored.standardError).isEmpty());
    EXPECT_EQ(desktop->keyStore().lookup(TranslateProgram::identifier(), u"openai_api_key"_s), key);
    EXPECT_TRUE(command({u"key"_s, u"status"_s}).standardOutput.startsWith("openAI=stored\n"));
    EXPECT_FALSE(contentOf(preferencesPath()).contains(key));
    EXPECT_FALSE(command({u"settings"_s, u"list"_s}).standardOutput.contains(key));

    service.setScript({answer(u"Hallo"_s)});
    EXPECT_EQ(program->run({u"translate"_s}, desktop->withoutDisplay(), "Hello").standardOutput, "Hallo\n");
    ASSERT_EQ(service.requests().size(), 1U);
    EXPECT_EQ(service.requests().front().header("authorization"), "Bearer " + key);

    EXPECT_EQ(command({u"key"_s, u"clear"_s, u"openAI"_s}).exitCode, 0);
    EXPECT_EQ(desktop->keyStore().count(TranslateProgram::identifier()), 0);
}

TEST_F(ProgramStore, SetsShowsAndResetsPreferences)
{
    setUp(plain());
    EXPECT_EQ(command({u"settings"_s, u"get"_s, u"settings.theme"_s}).standardOutput, "violet\n");
    EXPECT_EQ(command({u"settings"_s, u"set"_s, u"settings.theme"_s, u"ocean"_s}).exitCode, 0);
    EXPECT_EQ(command({u"settings"_s, u"get"_s, u"settings.theme"_s}).standardOutput, "ocean\n");
    const QByteArray before = contentOf(preferencesPath());
    EXPECT_TRUE(before.contains("settings.theme = \"ocean\"\n")) << before.constData();
    EXPECT_EQ(command({u"settings"_s, u"set"_s, u"settings.theme"_s, u"Ocean"_s}).exitCode, 2);
    EXPECT_EQ(command({u"settings"_s, u"set"_s, u"settings.nothing"_s, u"x"_s}).exitCode, 2);
    EXPECT_EQ(contentOf(preferencesPath()), before);
    EXPECT_EQ(command({u"settings"_s, u"reset"_s, u"settings.theme"_s}).exitCode, 0);
    EXPECT_EQ(command({u"settings"_s, u"get"_s, u"settings.theme"_s}).standardOutput, "violet\n");
    EXPECT_EQ(command({u"settings"_s, u"list"_s}).standardOutput.count('\n'), 12);
}

TEST_F(ProgramStore, TakesOverAnEarlierReleasesPreferencesOnce)
{
    setUp(plain());
    const QString older = u"com.kestrovander.app"_s;
    desktop->folders().write(u"home/.config/%1.conf"_s.arg(older),
                             "settings.theme = \"forest\"\nsettings.targetLanguage = \"English\"\nother = 1\n");
    desktop->folders().write(u"home/.config/com.orvesa.desktop.conf"_s, "settings.targetLanguage = \"Japanese\"\n");
    EXPECT_EQ(command({u"settings"_s, u"get"_s, u"settings.theme"_s}).standardOutput, "forest\n");
    EXPECT_EQ(command({u"settings"_s, u"get"_s, u"settings.targetLanguage"_s}).standardOutput, "Japanese\n");
    EXPECT_FALSE(contentOf(preferencesPath()).contains("other"));
    EXPECT_TRUE(contentOf(preferencesPath(older)).contains("forest")) << "it stays as it is";
    command({u"settings"_s, u"reset"_s, u"settings.theme"_s});
    EXPECT_EQ(command({u"settings"_s, u"get"_s, u"settings.theme"_s}).standardOutput, "violet\n")
        << "and is not read again";
}

TEST_F(ProgramStore, ARunningUtilityFollowsAChangeAtOnce)
{
    setUp();
    service.setScript({answer(u"one"_s), answer(u"two"_s)});
    startOver(u"Guten Morgen"_s);
    pressTranslate();
    awaitResultWith(u"one"_s);
    EXPECT_EQ(program->panelTitle(), u"Translate → English"_s);
    EXPECT_EQ(command({u"settings"_s, u"set"_s, u"settings.targetLanguage"_s, u"Japanese"_s}).exitCode, 0);
    pressTranslate();
    awaitResultWith(u"two"_s);
    EXPECT_EQ(program->panelTitle(), u"Translate → Japanese"_s);
    EXPECT_TRUE(service.requests().back().body.contains("Japanese"));
}

TEST_F(ProgramStore, NoCrashLeavesItsMemoryBehind)
{
    setUp();
    const Process &process = program->start();
    const QString files = u"/proc/%1/"_s.arg(process.pid());
    const QByteArray limits = contentOf(files + u"limits"_s);
    const qsizetype line = limits.indexOf("Max core file size");
    ASSERT_GE(line, 0);
    EXPECT_EQ(limits.mid(line).split('\n').front().simplified().split(' ').value(4), "0");
    EXPECT_EQ(contentOf(files + u"coredump_filter"_s).trimmed().toUInt(nullptr, 16), 0U);
}

} // namespace orvesa::desktop
