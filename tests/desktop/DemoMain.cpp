// orvesa-demo: shows Orvesa Translate at work on a private desktop. Ends with 0, or with 1 and the reason on standard
// error.

#include "desktop/Demonstration.h"
#include "desktop/TranslateProgram.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <exception>
#include <iostream>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"orvesa-demo"_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Shows Orvesa Translate at work on a private desktop."_s);
    parser.addHelpOption();
    const QCommandLineOption program(u"program"_s, u"The program to show."_s, u"path"_s,
                                     orvesa::desktop::TranslateProgram::pathBeside());
    const QCommandLineOption screenshot(u"screenshot"_s, u"Where the picture of the screen goes."_s, u"path"_s,
                                        u"build/demo/panel.png"_s);
    parser.addOptions({program, screenshot});
    parser.process(application);
    try {
        orvesa::desktop::Demonstration(parser.value(program), parser.value(screenshot)).run();
        return 0;
    } catch (const std::exception &failure) {
        std::cerr << "The demonstration failed: " << failure.what() << std::endl;
        return 1;
    }
}
