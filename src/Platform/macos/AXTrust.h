#pragma once

// The Accessibility permission of macOS. Main thread.

#include "Platform/AccessibilityTrustPort.h"

namespace orvesa {

class AXTrust final : public AccessibilityTrustPort {
public:
    [[nodiscard]] bool isTrusted() const override;
    /// The system shows its prompt, once at a time.
    void requestTrust() override;
};

} // namespace orvesa
