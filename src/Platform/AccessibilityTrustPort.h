#pragma once

// Whether the desktop lets this process read other applications' accessibility trees. Main thread.

namespace orvesa {

class AccessibilityTrustPort {
public:
    virtual ~AccessibilityTrustPort() = default;

    /// Answers at once from what is known; never blocks on another process for longer than 250 ms.
    [[nodiscard]] virtual bool isTrusted() const = 0;

    /// Shows the desktop's way of granting trust. Returns at once; asking again while it is shown does nothing.
    virtual void requestTrust() = 0;
};

} // namespace orvesa
