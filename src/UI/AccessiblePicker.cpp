#include "UI/AccessiblePicker.h"

#include <QAbstractItemView>
#include <QComboBox>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

QAccessibleInterface *describe(const QString &className, QObject *object)
{
    auto *picker = className == "orvesa::HeaderPicker"_L1 ? qobject_cast<QComboBox *>(object) : nullptr;
    return picker != nullptr ? new AccessiblePicker(picker) : nullptr;
}

} // namespace

AccessiblePicker::AccessiblePicker(QComboBox *picker) : QAccessibleWidget(picker, QAccessible::ComboBox) {}

void AccessiblePicker::install()
{
    QAccessible::installFactory(describe); // an equal factory is kept once
}

QComboBox *AccessiblePicker::picker() const
{
    return static_cast<QComboBox *>(widget());
}

QString AccessiblePicker::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Value ? picker()->currentText() : QAccessibleWidget::text(kind);
}

QAccessible::State AccessiblePicker::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.expandable = true;
    state.hasPopup = true;
    state.expanded = picker()->view()->isVisible();
    return state;
}

QStringList AccessiblePicker::actionNames() const
{
    QStringList names{showMenuAction()};
    for (int index = 0; index < picker()->count(); ++index) {
        names.append(picker()->itemText(index));
    }
    return names;
}

void AccessiblePicker::doAction(const QString &actionName)
{
    if (actionName == showMenuAction()) {
        picker()->showPopup();
        return;
    }
    if (const int index = picker()->findText(actionName); index >= 0 && picker()->isEnabled()) {
        picker()->setCurrentIndex(index);
        Q_EMIT picker()->activated(index);
    }
}

} // namespace orvesa
