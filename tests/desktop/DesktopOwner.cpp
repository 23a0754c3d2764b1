// Owns a private desktop until it is killed, for the test of what becomes of the desktop then. Prints the desktop's
// folder and the process ids of all that belongs to it, the guard included, and then waits for ever.

#include "desktop/Desktop.h"

#include <QCoreApplication>

#include <iostream>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const orvesa::desktop::Desktop desktop;
    std::cout << desktop.folders().top().toStdString() << '\n' << desktop.guardProcess();
    for (const qint64 pid : desktop.runningProcesses())
        std::cout << ' ' << pid;
    std::cout << std::endl;
    return QCoreApplication::exec();
}
