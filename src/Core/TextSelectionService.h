#pragma once

// Reads the text that is selected in the application in front.
//
// Stateless between captures; captures must not overlap. Main thread; the ports must outlive the service.

#include "Platform/AccessibilityElementsPort.h"
#include "Platform/AccessibilityTrustPort.h"

#include <QCoroTask>

#include <QString>

#include <optional>

namespace orvesa {

class TextSelectionService final {
public:
    TextSelectionService(AccessibilityElementsPort &elements, const AccessibilityTrustPort &trust);

    /// The selection exactly as it is, never blank. Throws AppError: accessibilityPermissionDenied or noSelectedText.
    [[nodiscard]] QCoro::Task<QString> currentSelectedText();

    /// The accessibility read alone: no side effects, may be empty or blank.
    [[nodiscard]] static std::optional<QString> selectedTextViaAccessibility(AccessibilityElementsPort &elements);

private:
    AccessibilityElementsPort &m_elements;
    const AccessibilityTrustPort &m_trust;
};

} // namespace orvesa
