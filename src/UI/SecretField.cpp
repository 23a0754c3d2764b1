#include "UI/SecretField.h"

#include "UI/Style.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

#include <memory>

namespace orvesa {

namespace {

constexpr QChar dot(0x2022);

QAccessible::UpdateHandler earlierHandler = nullptr;

/// The same event with dots for the text; null for an event without a text of a secret.
std::unique_ptr<QAccessibleEvent> masked(QAccessibleEvent &event)
{
    auto *field = qobject_cast<SecretField *>(event.object());
    if (field == nullptr) {
        return nullptr;
    }
    const auto dots = [](const QString &text) { return QString(text.size(), dot); };
    switch (event.type()) {
    case QAccessible::TextInserted: {
        const auto &inserted = static_cast<QAccessibleTextInsertEvent &>(event);
        return std::make_unique<QAccessibleTextInsertEvent>(field, inserted.changePosition(),
                                                            dots(inserted.textInserted()));
    }
    case QAccessible::TextRemoved: {
        const auto &removed = static_cast<QAccessibleTextRemoveEvent &>(event);
        return std::make_unique<QAccessibleTextRemoveEvent>(field, removed.changePosition(),
                                                            dots(removed.textRemoved()));
    }
    case QAccessible::TextUpdated: {
        const auto &updated = static_cast<QAccessibleTextUpdateEvent &>(event);
        return std::make_unique<QAccessibleTextUpdateEvent>(field, updated.changePosition(),
                                                            dots(updated.textRemoved()), dots(updated.textInserted()));
    }
    default:
        return nullptr;
    }
}

/// Qt's own field hides its content from screen readers, and yet tells them letter by letter what is typed.
void passOnMasked(QAccessibleEvent *event)
{
    const std::unique_ptr<QAccessibleEvent> replacement = masked(*event);
    QAccessible::installUpdateHandler(earlierHandler);
    QAccessible::updateAccessibility(replacement ? replacement.get() : event);
    earlierHandler = QAccessible::installUpdateHandler(passOnMasked);
}

void installMask()
{
    static bool isInstalled = false;
    if (!isInstalled) {
        isInstalled = true;
        earlierHandler = QAccessible::installUpdateHandler(passOnMasked);
    }
}

} // namespace

SecretField::SecretField(QWidget *parent) : TextField(parent)
{
    installMask();
    setEchoMode(QLineEdit::Password);
    setFont(Style::statusFont());
}

void SecretField::wipe()
{
    setText(QString());
}

void SecretField::keyPressEvent(QKeyEvent *event)
{
    for (const auto key : {QKeySequence::Undo, QKeySequence::Redo, QKeySequence::Copy, QKeySequence::Cut}) {
        if (event->matches(key)) {
            event->accept();
            return;
        }
    }
    TextField::keyPressEvent(event);
}

void SecretField::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *menu = createStandardContextMenu();
    // Undo and redo come first, up to the first line between the groups.
    const auto actions = menu->actions();
    for (QAction *action : actions) {
        menu->removeAction(action);
        if (action->isSeparator()) {
            break;
        }
    }
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

} // namespace orvesa
