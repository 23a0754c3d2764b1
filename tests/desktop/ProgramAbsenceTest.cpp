// The product on desktops that lack something: each lack gives a clear message in bounded time, and nothing else stops
// working.

#include "desktop/ProgramFixture.h"

#include <QElapsedTimer>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

/// More than any bound on the way to a message.
constexpr std::chrono::milliseconds messageDeadline{8'000};

} // namespace

class ProgramAbsence : public ProgramFixture {
protected:
    QString resultOfPress()
    {
        pressTranslate();
        return program->awaitResult([](const QString &text) { return !text.isEmpty(); }, u"a message"_s,
                                    messageDeadline);
    }
};

TEST_F(ProgramAbsence, NoSelection)
{
    setUp();
    program->start();
    editor = std::make_unique<TextEditor>(*desktop);
    EXPECT_EQ(resultOfPress(), u"No text is selected. Select some text in any app and try again."_s);
    EXPECT_TRUE(service.requests().empty());
    EXPECT_TRUE(editor->isInUse());
}

TEST_F(ProgramAbsence, NoKey)
{
    setUp();
    desktop->keyStore().remove(TranslateProgram::identifier(), u"openai_api_key"_s);
    startOver(u"sin clave"_s);
    EXPECT_EQ(resultOfPress(), missingKeyMessage);
    EXPECT_TRUE(service.requests().empty());
}

TEST_F(ProgramAbsence, NoKeyStore)
{
    DesktopOptions options;
    options.keyStore = KeyStore::absent;
    setUp(options);
    startOver(u"sin almacén"_s);
    EXPECT_EQ(resultOfPress(), missingKeyMessage);
    EXPECT_TRUE(service.requests().empty());
}

TEST_F(ProgramAbsence, KeyStoreThatLeaves)
{
    setUp();
    service.setScript({answer(u"with a key"_s)});
    startOver(u"con clave"_s);
    pressTranslate();
    awaitResultWith(u"with a key"_s);
    desktop->stopKeyStore();
    pressTranslate();
    EXPECT_EQ(awaitResultWith(u"API key"_s), missingKeyMessage);
}

TEST_F(ProgramAbsence, LockedKeyStore)
{
    DesktopOptions options;
    options.keyStore = KeyStore::locked; // and no prompt to unlock it with
    setUp(options);
    startOver(u"cerrado"_s);
    EXPECT_EQ(resultOfPress(), missingKeyMessage);
    EXPECT_TRUE(service.requests().empty());
    EXPECT_TRUE(editor->isInUse());
}

TEST_F(ProgramAbsence, NoAccessibility)
{
    setUp();
    startOver(u"sin permiso"_s);
    desktop->setAccessibilityEnabled(false);
    // The program hears of it on the bus; once it has answered a later call there it knows.
    ASSERT_EQ(desktop->runToEnd(TranslateProgram::pathBeside(), {u"--perform"_s, u"prompt:none"_s}).exitCode, 0);
    EXPECT_EQ(resultOfPress(),
              u"Accessibility permission is required. Enable it in System Settings › Privacy & Security › "
              u"Accessibility, then try again."_s);
    EXPECT_TRUE(service.requests().empty());
}

TEST_F(ProgramAbsence, NoService)
{
    setUp();
    program->setService(u"http://127.0.0.1:1"_s); // nothing listens there
    startOver(u"sin servicio"_s);
    EXPECT_TRUE(resultOfPress().startsWith(u"API request failed: "_s));
}

TEST_F(ProgramAbsence, NoTrayUntilOneComes)
{
    setUp();
    service.setScript({answer(u"no tray needed"_s)});
    startOver(u"sin bandeja"_s);
    pressTranslate();
    awaitResultWith(u"no tray needed"_s);
    desktop->startTray(Tray::embedding);
    const xcb_window_t icon = desktop->windows().awaitTrayIcon(program->process().pid());
    EXPECT_FALSE(desktop->windows().geometry(icon).isEmpty());
}

TEST_F(ProgramAbsence, NoSessionBus)
{
    // Nothing of the program can be read then, but its windows can be seen.
    setUp();
    program->startUnheard(desktop->withoutSessionBus());
    editor = std::make_unique<TextEditor>(*desktop, u"sin bus"_s);
    editor->selectAll();
    const std::vector<xcb_window_t> before = desktop->windows().mapped({.pid = program->process().pid()});
    pressTranslate();
    waitUntil([&] { return desktop->windows().mapped({.pid = program->process().pid()}).size() > before.size(); },
              u"the panel"_s, messageDeadline);
    EXPECT_TRUE(program->process().isRunning());
    EXPECT_TRUE(service.requests().empty()) << "nothing can be read and no key be had without a bus";
}

TEST_F(ProgramAbsence, NoDisplay)
{
    setUp();
    const ProcessResult result = program->run({}, desktop->withoutDisplay());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.standardError.contains("There is no display")) << result.standardError.constData();
    EXPECT_TRUE(result.standardOutput.isEmpty());
}

} // namespace orvesa::desktop
