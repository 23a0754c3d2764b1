// orvesa-session-check: checks the installed product in the desktop session that it is started in. Ends with 0 when
// every step passed.

#include "desktop/SessionCheck.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <exception>
#include <iostream>

using namespace Qt::StringLiterals;
using namespace orvesa::desktop;

namespace {

SessionTray trayFrom(const QString &name)
{
    if (name == u"notifier"_s)
        return SessionTray::notifier;
    if (name == u"either"_s)
        return SessionTray::either;
    return name == u"embedding"_s ? SessionTray::embedding : SessionTray::none;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Checks Orvesa Translate in the desktop session around."_s);
    parser.addHelpOption();
    const QCommandLineOption name(u"name"_s, u"What the desktop is called."_s, u"NAME"_s);
    const QCommandLineOption editor(u"editor"_s, u"A text editor's command line."_s, u"COMMAND"_s);
    const QCommandLineOption editorClass(u"editor-class"_s, u"Part of its window's class."_s, u"TEXT"_s);
    const QCommandLineOption tray(u"tray"_s, u"notifier, embedding, either or none."_s, u"KIND"_s, u"notifier"_s);
    const QCommandLineOption splash(u"splash"_s, u"Part of the class of the window that covers the start."_s,
                                    u"TEXT"_s);
    const QCommandLineOption asks(u"asks-for-accessibility"_s, u"Chooses Enable where the program has to ask."_s);
    const QCommandLineOption dismiss(u"dismiss"_s, u"Puts away what the desktop greets its users with."_s, u"KEY"_s);
    const QCommandLineOption answer(u"answer"_s, u"What the service answers."_s, u"TEXT"_s);
    const QCommandLineOption pictures(u"pictures"_s, u"The folder for screenshots."_s, u"FOLDER"_s);
    const QCommandLineOption doctor(u"doctor"_s, u"What the doctor's page must have; once for each."_s, u"TEXT"_s);
    parser.addOptions({name, editor, editorClass, tray, splash, asks, dismiss, answer, pictures, doctor});
    parser.process(application);
    SessionCheckOptions options;
    options.name = parser.value(name);
    options.editor = parser.value(editor).split(u' ');
    options.editorClass = parser.value(editorClass);
    options.tray = trayFrom(parser.value(tray));
    options.splash = parser.value(splash);
    options.isAskedForAccessibility = parser.isSet(asks);
    options.dismiss = parser.value(dismiss);
    options.answer = parser.value(answer);
    options.pictures = parser.value(pictures);
    options.doctorLines = parser.values(doctor);
    try {
        RunningSession session;
        return SessionCheck(session, options).run() ? 0 : 1;
    } catch (const std::exception &failure) {
        std::cerr << "The session could not be checked: " << failure.what() << std::endl;
        return 1;
    }
}
