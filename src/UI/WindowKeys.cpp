#include "UI/WindowKeys.h"

#include <QCoreApplication>
#include <QShortcut>
#include <QWidget>

#include <utility>

namespace orvesa::WindowKeys {

namespace {

void addShortcut(QWidget &window, Qt::Key key, QKeySequence::StandardKey standard, std::function<void()> action)
{
    QList<QKeySequence> keys = QKeySequence::keyBindings(standard);
    const QKeySequence usual(QKeyCombination(Qt::ControlModifier, key));
    if (!keys.contains(usual)) {
        keys.prepend(usual);
    }
    auto *const shortcut = new QShortcut(&window);
    shortcut->setKeys(keys);
    QObject::connect(shortcut, &QShortcut::activated, &window, std::move(action));
}

} // namespace

void add(QWidget &window, std::function<void()> close)
{
    addShortcut(window, Qt::Key_W, QKeySequence::Close, std::move(close));
    addShortcut(window, Qt::Key_Q, QKeySequence::Quit, [] { QCoreApplication::quit(); });
}

} // namespace orvesa::WindowKeys
