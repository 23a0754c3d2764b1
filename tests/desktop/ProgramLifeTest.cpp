// The product as a resident program: one instance, its tray menu, its end, and what it leaves in the world.

#include "desktop/ProgramFixture.h"

#include <QDirIterator>
#include <QFile>

#include <algorithm>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using service::ServiceResponse;

class ProgramLife : public ProgramFixture {
protected:
    static DesktopOptions withTray()
    {
        DesktopOptions options;
        options.tray = Tray::statusNotifier;
        return options;
    }

    [[nodiscard]] Accessible settingsWindow() const
    {
        for (const Accessible &window : desktop->accessibles().windows(program->process().pid()))
            if (window.has(AccessibleState::showing) && window.name().contains(u"Settings"_s))
                return window;
        return {};
    }
};

TEST_F(ProgramLife, ASecondStartOpensTheSettingsOfTheFirstAndEnds)
{
    setUp();
    program->start();
    EXPECT_TRUE(desktop->windows().mapped({.pid = program->process().pid()}).empty());
    const ProcessResult second = program->run({});
    EXPECT_EQ(second.exitCode, 0) << second.standardError.constData();
    const xcb_window_t window = desktop->windows().awaitWindow({.pid = program->process().pid()});
    desktop->windows().awaitActive(window);
    EXPECT_FALSE(desktop->accessibles().await([&] { return settingsWindow(); }, u"the settings window"_s).isNull());
    EXPECT_TRUE(program->process().isRunning());
}

TEST_F(ProgramLife, ActionsCanBeAskedForFromOutside)
{
    setUp();
    service.setScript({answer(u"asked for"_s)});
    startOver(u"pedido"_s);
    const ProcessResult asked = program->run({u"--perform"_s, u"translateSelection"_s});
    EXPECT_EQ(asked.exitCode, 0) << asked.standardError.constData();
    awaitResultWith(u"asked for"_s);
}

TEST_F(ProgramLife, AskingNobodyFails)
{
    setUp();
    const ProcessResult asked = program->run({u"--perform"_s, u"translateSelection"_s});
    EXPECT_EQ(asked.exitCode, 1);
    EXPECT_FALSE(asked.standardError.isEmpty());
}

TEST_F(ProgramLife, TheTrayMenuOffersItsActions)
{
    setUp(withTray());
    service.setScript({answer(u"from the menu"_s)});
    startOver(u"del menú"_s);
    const TrayItem item = desktop->tray().awaitItem(program->process().pid());
    EXPECT_EQ(desktop->tray().menuTexts(item),
              (QStringList{u"Translate Selection"_s, u"Polish Selection"_s, u"OCR Translate"_s, u"Settings…"_s,
                           u"Quit Orvesa Translate"_s}));
    desktop->tray().click(item, u"Translate Selection"_s);
    awaitResultWith(u"from the menu"_s);
}

TEST_F(ProgramLife, QuitEndsIt)
{
    setUp(withTray());
    Process &process = program->start();
    const TrayItem item = desktop->tray().awaitItem(process.pid());
    desktop->tray().click(item, u"Quit Orvesa Translate"_s);
    const ProcessResult result = process.awaitEnd();
    EXPECT_EQ(result.exitCode, 0) << result.standardError.constData();
    EXPECT_FALSE(result.crashed);
    desktop->tray().awaitNoItem(process.pid());
}

TEST_F(ProgramLife, QuitEndsItWhileARequestIsPending)
{
    setUp(withTray());
    service.setScript({ServiceResponse::silence()});
    startOver(u"pendiente"_s);
    pressTranslate();
    ASSERT_TRUE(service.waitForRequests(1));
    const TrayItem item = desktop->tray().awaitItem(program->process().pid());
    desktop->tray().click(item, u"Quit Orvesa Translate"_s);
    const ProcessResult result = program->process().awaitEnd();
    EXPECT_EQ(result.exitCode, 0) << result.standardError.constData();
    EXPECT_FALSE(result.crashed);
}

TEST_F(ProgramLife, TheKeyIsSeenByTheServiceAndNobodyElse)
{
    setUp();
    service.setScript(
        {ServiceResponse::text(401, R"({"error":{"message":"Incorrect API key provided."}})"), answer(u"accepted"_s)});
    startOver(u"secreto"_s);
    pressTranslate();
    const QString failure = awaitResultWith(u"Incorrect API key"_s);
    EXPECT_FALSE(failure.contains(QString::fromUtf8(key)));
    pressTranslate();
    awaitResultWith(u"accepted"_s);
    ASSERT_EQ(service.requests().size(), 2U);
    EXPECT_EQ(service.requests().back().header("authorization"), "Bearer " + key);
    EXPECT_FALSE(service.requests().back().target.contains(key));
    EXPECT_FALSE(service.requests().back().body.contains(key));

    for (const qint64 pid : desktop->runningProcesses()) {
        QFile arguments(u"/proc/%1/cmdline"_s.arg(pid));
        arguments.open(QFile::ReadOnly);
        EXPECT_FALSE(arguments.readAll().contains(key)) << "in the arguments of process " << pid;
    }
    EXPECT_FALSE(program->panel().dump().contains(QString::fromUtf8(key)));
    int filesRead = 0;
    QDirIterator files(desktop->folders().top(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QFile::ReadOnly))
            continue;
        ++filesRead;
        EXPECT_FALSE(file.readAll().contains(key)) << file.fileName().toStdString();
    }
    EXPECT_GT(filesRead, 2);
    program->process().terminate();
    EXPECT_FALSE(program->process().standardOutput().contains(key));
    EXPECT_FALSE(program->process().standardError().contains(key));
}

} // namespace orvesa::desktop
