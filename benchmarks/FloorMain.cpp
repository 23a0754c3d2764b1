// The floor: the least that a tray utility with widgets costs. The benchmarks compare the product with it.
//
// It makes what every such program needs, an application, a tray icon and a menu with as many entries as the product's,
// and does nothing. Prints "ready" when the event loop runs.

#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTextStream>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QMenu menu;
    for (const auto &title : {u"First action"_s, u"Second action"_s, u"Third action"_s}) {
        menu.addAction(title);
    }
    menu.addSeparator();
    menu.addAction(u"Settings"_s);
    menu.addSeparator();
    QObject::connect(menu.addAction(u"Quit"_s), &QAction::triggered, &application, &QApplication::quit);

    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::black);
    QSystemTrayIcon icon{QIcon(pixmap)};
    icon.setContextMenu(&menu);
    icon.show();

    QTimer::singleShot(0, &application, [] { QTextStream(stdout) << "ready" << Qt::endl; });
    return QApplication::exec();
}
