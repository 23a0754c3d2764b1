#pragma once

// The exported object that answers what the running utility holds, for the page that tells the user what is wrong.
// Main thread. The answer has numbers only, no text.

#include <QList>
#include <QObject>

#include <functional>

namespace orvesa {

class DBusDiagnosticsObject final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.orvesa.Diagnostics1")

public:
    explicit DBusDiagnosticsObject(std::function<QList<quint32>()> heldShortcuts);

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface's methods on the bus
    /// The identifiers of the shortcuts that the keyboard has given to the utility.
    QList<uint> HeldShortcuts() const;
    // NOLINTEND(readability-identifier-naming)

private:
    std::function<QList<quint32>()> m_heldShortcuts;
};

} // namespace orvesa
