#pragma once

// What screen readers get of a picker: its current choice, and every choice as an action that picks it.
//
// Qt alone offers to open the list, whose rows can be selected and not chosen. Main thread.

#include <QAccessibleWidget>

class QComboBox;

namespace orvesa {

class AccessiblePicker final : public QAccessibleWidget {
public:
    explicit AccessiblePicker(QComboBox *picker);

    /// Has pickers of that class described by this one. For the application's start; again does nothing.
    static void install();

    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &actionName) override;

private:
    [[nodiscard]] QComboBox *picker() const;
};

} // namespace orvesa
