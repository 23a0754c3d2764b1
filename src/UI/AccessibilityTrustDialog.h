#pragma once

// Asks the user to switch the desktop's accessibility interface on, which reading other programs' selections needs.
//
// Non-modal; one at a time is shown. Main thread only.

#include <QDialog>

#include <functional>

namespace orvesa {

class AccessibilityTrustDialog final : public QDialog {
    Q_OBJECT

public:
    /// `onEnable` runs when the user agrees.
    explicit AccessibilityTrustDialog(std::function<void()> onEnable);

    /// Takes its texts from the interface language, and shows.
    void present();
};

} // namespace orvesa
