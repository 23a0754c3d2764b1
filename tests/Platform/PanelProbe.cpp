// A program with a panel on the private desktop. Prints "window ID" and "compositing yes|no", then obeys: "show",
// "hide", each answered with its name once done, until its input ends.

#include "Platform/linux/X11PanelWindow.h"

#include <QGuiApplication>
#include <QRasterWindow>
#include <QSocketNotifier>

#include <cstdio>
#include <iostream>
#include <string>

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    orvesa::X11Connection connection;
    orvesa::X11PanelWindow panels(connection);
    QRasterWindow window;
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    window.setGeometry(100, 100, 200, 100);
    panels.makePanel(window);
    std::printf("window %llu\ncompositing %s\n", static_cast<unsigned long long>(window.winId()),
                panels.isCompositing() ? "yes" : "no");
    std::fflush(stdout);
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &window, [&] {
        std::string command;
        if (!std::getline(std::cin, command)) {
            QCoreApplication::quit();
            return;
        }
        window.setVisible(command == "show");
        std::puts(command.c_str());
        std::fflush(stdout);
    });
    return QGuiApplication::exec();
}
