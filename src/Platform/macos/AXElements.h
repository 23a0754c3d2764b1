#pragma once

// Accessibility elements of macOS, one to one.
//
// Main thread. Elements own their reference; what an attribute copy hands over is released on every path.

#include "Platform/AccessibilityElementsPort.h"

namespace orvesa {

class AXElements final : public AccessibilityElementsPort {
public:
    [[nodiscard]] AccessibilityElement systemWide() override;
    [[nodiscard]] AccessibilityElement application(qint64 processIdentifier) override;
    [[nodiscard]] AccessibilityValue copyAttribute(const AccessibilityElement &element,
                                                   const QString &attribute) override;
    bool performAction(const AccessibilityElement &element, const QString &action) override;
};

} // namespace orvesa
