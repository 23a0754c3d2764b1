#pragma once

// Finds an edit command in the menu bar of the application in front, so that it can be invoked as if it had been
// clicked, and so that a disabled one tells that there is nothing to do. Static operations; main thread.

#include "Platform/AccessibilityElementsPort.h"
#include "Platform/WorkspacePort.h"

#include <cstddef>
#include <optional>
#include <variant>
#include <vector>

namespace orvesa {

class AppMenuItemService final {
public:
    AppMenuItemService() = delete;

    enum class EditAction { copy };

    /// There is such an item, and it is enabled.
    struct Found {
        AccessibilityElement element;
    };
    struct Disabled {};
    /// No menu bar, or none with such an item.
    struct NotFound {};
    using LookupResult = std::variant<Found, Disabled, NotFound>;

    /// Levels of menus below a top-level menu that are searched, beside its own.
    static constexpr int greatestDepth = 4;

    [[nodiscard]] static LookupResult find(AccessibilityElementsPort &elements, const WorkspacePort &workspace,
                                           EditAction action);

    /// The order in which a menu bar's menus are looked through: from where the Edit menu normally is, outward.
    [[nodiscard]] static std::vector<std::size_t> searchOrder(std::size_t count);

private:
    [[nodiscard]] static AccessibilityElement find(AccessibilityElementsPort &elements,
                                                   const AccessibilityElement &element, EditAction action, int depth);
    [[nodiscard]] static bool isItem(AccessibilityElementsPort &elements, const AccessibilityElement &element,
                                     EditAction action);
    [[nodiscard]] static AccessibilityElement
    elementValue(AccessibilityElementsPort &elements, const AccessibilityElement &element, const QString &attribute);
    [[nodiscard]] static std::vector<AccessibilityElement> children(AccessibilityElementsPort &elements,
                                                                    const AccessibilityElement &element);
    [[nodiscard]] static bool isEnabled(AccessibilityElementsPort &elements, const AccessibilityElement &element);
};

} // namespace orvesa
