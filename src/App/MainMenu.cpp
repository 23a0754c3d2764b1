#include "App/MainMenu.h"

#include <QAction>
#include <QApplication>
#include <QMetaObject>
#include <QWidget>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

void callOnFocused(const char *slot)
{
    QWidget *const focused = QApplication::focusWidget();
    const QByteArray signature = QByteArray(slot).append("()");
    if (focused != nullptr && focused->metaObject()->indexOfMethod(signature.constData()) >= 0) {
        QMetaObject::invokeMethod(focused, slot);
    }
}

void closeActiveWindow()
{
    if (QWidget *const window = QApplication::activeWindow()) {
        window->close();
    }
}

} // namespace

MainMenu::MainMenu()
{
    // The system gives the application menu its title; the role brings the item there.
    QAction *const quit = m_bar.addMenu(QString())->addAction(u"Quit Orvesa Translate"_s);
    quit->setMenuRole(QAction::QuitRole);
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    QObject::connect(quit, &QAction::triggered, quit, [] { QCoreApplication::quit(); });

    QMenu &edit = *m_bar.addMenu(u"Edit"_s);
    addEditing(edit, u"Undo"_s, "undo", QKeySequence(Qt::CTRL | Qt::Key_Z));
    addEditing(edit, u"Redo"_s, "redo", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
    edit.addSeparator();
    addEditing(edit, u"Cut"_s, "cut", QKeySequence(Qt::CTRL | Qt::Key_X));
    addEditing(edit, u"Copy"_s, "copy", QKeySequence(Qt::CTRL | Qt::Key_C));
    addEditing(edit, u"Paste"_s, "paste", QKeySequence(Qt::CTRL | Qt::Key_V));
    addEditing(edit, u"Select All"_s, "selectAll", QKeySequence(Qt::CTRL | Qt::Key_A));

    QAction *const close = m_bar.addMenu(u"Window"_s)->addAction(u"Close Window"_s);
    close->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));
    QObject::connect(close, &QAction::triggered, close, &closeActiveWindow);
}

void MainMenu::addEditing(QMenu &menu, const QString &title, const char *slot, const QKeySequence &key)
{
    QAction *const action = menu.addAction(title);
    action->setMenuRole(QAction::NoRole);
    action->setShortcut(key);
    QObject::connect(action, &QAction::triggered, action, [slot] { callOnFocused(slot); });
}

} // namespace orvesa
