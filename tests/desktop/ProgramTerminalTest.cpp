// A key typed at a real terminal: it is never shown, and the terminal is as it was however the program ends.

#include "desktop/ProgramFixture.h"
#include "desktop/Terminal.h"

#include <csignal>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class ProgramTerminal : public ProgramFixture {
protected:
    void SetUp() override
    {
        DesktopOptions options;
        options.windowManager = WindowManager::none;
        options.accessibility = Accessibility::none;
        setUp(options);
        desktop->keyStore().remove(TranslateProgram::identifier(), account);
    }

    [[nodiscard]] QByteArray stored()
    {
        return desktop->keyStore().lookup(TranslateProgram::identifier(), account).value_or(QByteArray());
    }
    [[nodiscard]] int storedCount()
    {
        return static_cast<int>(desktop->keyStore().count(TranslateProgram::identifier()));
    }

    static constexpr const char *question = "API key for OpenAI: ";
    const QStringList words{u"key"_s, u"set"_s, u"openAI"_s};
    const QString account = u"openai_api_key"_s;
};

TEST_F(ProgramTerminal, AKeyIsTypedUnseenAndKept)
{
    Terminal terminal(*desktop, TranslateProgram::pathBeside(), words);
    terminal.awaitShown(question);
    EXPECT_FALSE(terminal.isShowingWhatIsTyped());
    terminal.type("wrong\x15" + key + '\n'); // Control+U: the terminal's own editing of the line works
    EXPECT_EQ(terminal.awaitEnd(), 0) << terminal.shown().constData();
    EXPECT_EQ(terminal.shown(), QByteArray(question) + "\r\n");
    EXPECT_TRUE(terminal.isShowingWhatIsTyped());
    EXPECT_EQ(stored(), key);
}

TEST_F(ProgramTerminal, KeysThatInterruptLeaveTheTerminalAsItWas)
{
    struct Ending {
        char key;
        int signal;
    };
    for (const Ending ending : {Ending{'\x03', SIGINT}, Ending{'\x1c', SIGQUIT}}) {
        Terminal terminal(*desktop, TranslateProgram::pathBeside(), words);
        terminal.awaitShown(question);
        terminal.type("begun-" + key);
        terminal.type(QByteArray(1, ending.key));
        EXPECT_EQ(terminal.awaitEnd(), 128 + ending.signal) << terminal.shown().constData();
        EXPECT_TRUE(terminal.isShowingWhatIsTyped());
        EXPECT_EQ(terminal.unread(), 0) << "a shell would take the rest for a command";
        EXPECT_FALSE(terminal.shown().contains("begun"));
    }
    EXPECT_EQ(storedCount(), 0);
}

TEST_F(ProgramTerminal, SignalsLeaveTheTerminalAsItWas)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Terminal terminal(*desktop, TranslateProgram::pathBeside(), words);
        terminal.awaitShown(question);
        terminal.signalForeground(signal);
        EXPECT_EQ(terminal.awaitEnd(), 128 + signal) << terminal.shown().constData();
        EXPECT_TRUE(terminal.isShowingWhatIsTyped());
    }
    EXPECT_EQ(storedCount(), 0);
}

TEST_F(ProgramTerminal, AStoppedQuestionIsAskedAnew)
{
    // A shell with job control: it notices the stop, shows the terminal's state, and brings the program back.
    const QString script = u"\"$@\"; stty -a; fg"_s;
    Terminal terminal(*desktop, u"bash"_s,
                      QStringList{u"-mc"_s, script, u"bash"_s, TranslateProgram::pathBeside()} + words);
    terminal.awaitShown(question);
    terminal.type("begun-\x1a"); // Control+Z
    terminal.awaitShown(question, 2);
    EXPECT_TRUE(terminal.shown().contains(" echo ")) << terminal.shown().constData();
    EXPECT_FALSE(terminal.isShowingWhatIsTyped());
    terminal.type(key + '\n');
    EXPECT_EQ(terminal.awaitEnd(), 0) << terminal.shown().constData();
    EXPECT_TRUE(terminal.isShowingWhatIsTyped());
    EXPECT_EQ(stored(), key);
    EXPECT_FALSE(terminal.shown().contains(key));
}

} // namespace orvesa::desktop
