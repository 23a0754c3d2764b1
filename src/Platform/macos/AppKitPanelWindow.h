#pragma once

// The panel's properties, set on the NSPanel that Qt makes for a tool window.
//
// Main thread. The panel belongs to Qt's window; nothing of it is kept here.

#include "Platform/PanelWindowPort.h"

#include <QObject>

namespace orvesa {

class AppKitPanelWindow final : public QObject, public PanelWindowPort {
public:
    void makePanel(QWindow &window) override;
    bool orderFront(QWindow &window) override;
    /// The system always blends windows.
    [[nodiscard]] bool isCompositing() const override { return true; }

    void announce(QObject &window, const QString &text) override;

    [[nodiscard]] bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace orvesa
