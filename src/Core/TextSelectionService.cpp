#include "Core/TextSelectionService.h"

#include "Models/AppError.h"
#include "Models/Text.h"

namespace orvesa {

using namespace Qt::StringLiterals;

TextSelectionService::TextSelectionService(AccessibilityElementsPort &elements, const AccessibilityTrustPort &trust)
    : m_elements(elements), m_trust(trust)
{
}

QCoro::Task<QString> TextSelectionService::currentSelectedText()
{
    // The ways to the selection in their order; the first that gives one ends the search. The read comes before the
    // question of trust: it costs little and simply gives nothing when trust is missing.
    if (const std::optional<QString> text = selectedTextViaAccessibility(m_elements); text && !isBlank(*text)) {
        co_return *text;
    }
    if (!m_trust.isTrusted()) {
        throw AppError(AppError::Kind::accessibilityPermissionDenied);
    }
    throw AppError(AppError::Kind::noSelectedText);
}

std::optional<QString> TextSelectionService::selectedTextViaAccessibility(AccessibilityElementsPort &elements)
{
    const AccessibilityElement desktop = elements.systemWide();
    if (!desktop) {
        return std::nullopt;
    }
    const AccessibilityValue focusedValue = elements.copyAttribute(desktop, u"AXFocusedUIElement"_s);
    const auto *focused = std::get_if<AccessibilityElement>(&focusedValue);
    if (focused == nullptr || *focused == nullptr) {
        return std::nullopt;
    }
    const AccessibilityValue selected = elements.copyAttribute(*focused, u"AXSelectedText"_s);
    if (const auto *text = std::get_if<QString>(&selected)) {
        return *text;
    }
    return std::nullopt;
}

} // namespace orvesa
