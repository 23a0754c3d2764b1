// The page for bug reports on real desktops, and the program started over the bus as launchers do.

#include "desktop/ProgramFixture.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class ProgramDoctor : public ProgramFixture {
protected:
    [[nodiscard]] QString page(const QStringList &options = {}, const EnvironmentChanges &changes = {})
    {
        last = program->run(QStringList{u"doctor"_s} + options, changes);
        return QString::fromUtf8(last.standardOutput);
    }

    [[nodiscard]] ProcessResult call(const QString &destination, const QString &path, const QString &method,
                                     const QStringList &arguments = {})
    {
        return desktop->runToEnd(u"gdbus"_s, QStringList{u"call"_s, u"--session"_s, u"--dest"_s, destination,
                                                         u"--object-path"_s, path, u"--method"_s, method} +
                                                 arguments);
    }

    ProcessResult last;
};

TEST_F(ProgramDoctor, FindsEverythingOnACompleteDesktop)
{
    DesktopOptions options;
    options.tray = Tray::statusNotifier;
    options.environment = {{u"XDG_CURRENT_DESKTOP"_s, u"XFCE"_s}};
    setUp(options);
    program->start();
    const QString text = page();
    for (const QString &line :
         {u"Desktop: XFCE, X11"_s, u"Accessibility: switched on"_s, u"Key store: running, unlocked"_s,
          u"API key for OpenAI: stored"_s, u"Tray: there (StatusNotifierItem)"_s, u"Utility: running"_s,
          u"Shortcut ⌥D of translateSelection: held by the utility"_s, u"Start at login: off"_s,
          u"Screen capture: there"_s}) {
        EXPECT_TRUE(text.contains(line)) << line.toStdString() << "\n" << text.toStdString();
    }
    EXPECT_TRUE(desktop->keyboard().isTaken(u"Alt+d"_s)) << "the utility's shortcut is still its own";
    EXPECT_FALSE(text.contains(QString::fromUtf8(key)));
    EXPECT_TRUE(service.requests().empty());
    EXPECT_EQ(last.exitCode, 0) << text.toStdString();
}

TEST_F(ProgramDoctor, SaysWhatIsMissing)
{
    DesktopOptions options;
    options.accessibility = Accessibility::disabled;
    options.keyStore = KeyStore::locked;
    setUp(options);
    const QString text = page();
    EXPECT_EQ(last.exitCode, 1);
    for (const QString &line : {u"Accessibility: switched off"_s, u"Key store: running, locked"_s, u"Tray: none"_s,
                                u"Utility: not running"_s, u"Shortcut ⌥D of translateSelection: free"_s}) {
        EXPECT_TRUE(text.contains(line)) << line.toStdString() << "\n" << text.toStdString();
    }
    EXPECT_FALSE(desktop->keyboard().isTaken(u"Alt+d"_s)) << "looking takes nothing";
    EXPECT_TRUE(desktop->keyStore().isDefaultCollectionLocked()) << "looking unlocks nothing";
}

TEST_F(ProgramDoctor, SaysWhatIsTakenAndWhatIsNotInstalled)
{
    DesktopOptions options;
    options.accessibility = Accessibility::none;
    options.keyStore = KeyStore::absent;
    options.tray = Tray::embedding;
    setUp(options);
    desktop->keyboard().take(u"Alt+d"_s);
    const QString text = page({}, {{u"TESSDATA_PREFIX"_s, desktop->folders().home()}});
    EXPECT_EQ(last.exitCode, 1);
    for (const QString &line :
         {u"Accessibility: no accessibility bus"_s, u"Key store: absent"_s, u"not looked for"_s,
          u"Tray: there (XEmbed)"_s, u"Shortcut ⌥D of translateSelection: taken by another program"_s,
          u"Shortcut ⌥S of polishSelection: free"_s, u"Text recognition: languages are missing"_s,
          u"tesseract-ocr-eng"_s, u"tesseract-ocr-chi-tra"_s}) {
        EXPECT_TRUE(text.contains(line)) << line.toStdString() << "\n" << text.toStdString();
    }
}

TEST_F(ProgramDoctor, NeedsNoSession)
{
    DesktopOptions options;
    options.sessionBus = SessionBus::none;
    setUp(options);
    const QString text = page({}, desktop->withoutDisplay());
    EXPECT_EQ(last.exitCode, 1);
    for (const QString &line : {u"Desktop: no graphical session"_s, u"Accessibility: no session bus"_s,
                                u"Key store: no session bus"_s, u"Tray: none"_s, u"Screen capture: there"_s}) {
        EXPECT_TRUE(text.contains(line)) << line.toStdString() << "\n" << text.toStdString();
    }
}

TEST_F(ProgramDoctor, ReachesTheServiceOnlyWhenAsked)
{
    setUp();
    service.setResponder([](const service::ServiceRequest &) { return service::ServiceResponse::text(401, "no key"); });
    EXPECT_FALSE(page().contains(u"Network"_s));
    EXPECT_TRUE(service.requests().empty());
    const QString text = page({u"--network"_s});
    EXPECT_TRUE(text.contains(u"Network: OpenAI answers (HTTP 401"_s)) << text.toStdString();
    EXPECT_FALSE(text.contains(u"127.0.0.1"_s));
    ASSERT_EQ(service.requests().size(), 1U);
    EXPECT_FALSE(service.requests().front().header("authorization").has_value());
}

TEST_F(ProgramDoctor, TheBusStartsTheProgramForAnActionOfItsDesktopEntry)
{
    setUp();
    const QString identifier = TranslateProgram::identifier();
    QString path = u'/' + identifier;
    path.replace(u'.', u'/');
    desktop->folders().write(
        u"bus-services/%1.service"_s.arg(identifier),
        u"[D-BUS Service]\nName=%1\nExec=%2\n"_s.arg(identifier, TranslateProgram::pathBeside()).toUtf8());
    ASSERT_EQ(
        call(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus.ReloadConfig"_s).exitCode,
        0);
    const ProcessResult asked =
        call(identifier, path, u"org.freedesktop.Application.ActivateAction"_s, {u"settings"_s, u"[]"_s, u"{}"_s});
    ASSERT_EQ(asked.exitCode, 0) << asked.standardError.constData();
    const xcb_window_t window = desktop->windows().awaitWindow({.title = u"Orvesa Translate Settings"_s});
    EXPECT_TRUE(desktop->windows().isMapped(window));
    EXPECT_TRUE(page().contains(u"Utility: running"_s));
}

} // namespace orvesa::desktop
