#pragma once

// What every desktop's accessibility elements promise, to be asked of the fake that other tests rely on and of the real
// ones.

#include "Platform/AccessibilityElementsPort.h"

#include <functional>

namespace orvesa::tests {

/// A desktop with an application in front, in whose focused element text is selected, and whose menu bar has a Copy
/// command that is enabled.
struct AccessibilityBench {
    qint64 application = 0;
    QString selection;
    /// Whether the Copy command has been chosen; may wait for it.
    std::function<bool()> isCopied;
    /// Ends the application, and returns when it has gone.
    std::function<void()> endApplication;
};

void expectAccessibilityElementsContract(AccessibilityElementsPort &elements, const AccessibilityBench &bench);

} // namespace orvesa::tests
