#include "Core/AppMenuItemService.h"

#include <algorithm>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// A menu bar begins with the system's and the application's own menu; then come File and Edit.
constexpr std::size_t usualEditMenu = 3;
/// What accessibility says for the command key alone.
constexpr qint64 commandAlone = 0;

QString identifier(AppMenuItemService::EditAction action)
{
    switch (action) {
    case AppMenuItemService::EditAction::copy:
        break;
    }
    return u"copy:"_s;
}

QString commandCharacter(AppMenuItemService::EditAction action)
{
    switch (action) {
    case AppMenuItemService::EditAction::copy:
        break;
    }
    return u"C"_s;
}

} // namespace

AppMenuItemService::LookupResult AppMenuItemService::find(AccessibilityElementsPort &elements,
                                                          const WorkspacePort &workspace, EditAction action)
{
    const auto process = workspace.frontmostApplication();
    if (!process) {
        return NotFound{};
    }
    const AccessibilityElement menuBar = elementValue(elements, elements.application(*process), u"AXMenuBar"_s);
    if (!menuBar) {
        return NotFound{};
    }
    const std::vector<AccessibilityElement> menus = children(elements, menuBar);
    for (const std::size_t index : searchOrder(menus.size())) {
        if (const AccessibilityElement item = find(elements, menus[index], action, 0)) {
            if (isEnabled(elements, item)) {
                return Found{item};
            }
            return Disabled{};
        }
    }
    return NotFound{};
}

std::vector<std::size_t> AppMenuItemService::searchOrder(std::size_t count)
{
    std::vector<std::size_t> order;
    if (count == 0) {
        return order;
    }
    const std::size_t start = std::min(count - 1, usualEditMenu);
    order.push_back(start);
    for (std::size_t distance = 1; order.size() < count; ++distance) {
        if (distance <= start) {
            order.push_back(start - distance);
        }
        if (start + distance < count) {
            order.push_back(start + distance);
        }
    }
    return order;
}

AccessibilityElement AppMenuItemService::find(AccessibilityElementsPort &elements, const AccessibilityElement &element,
                                              EditAction action, int depth)
{
    if (depth > greatestDepth) {
        return nullptr;
    }
    for (const AccessibilityElement &child : children(elements, element)) {
        if (isItem(elements, child, action)) {
            return child;
        }
        if (AccessibilityElement item = find(elements, child, action, depth + 1)) {
            return item;
        }
    }
    return nullptr;
}

bool AppMenuItemService::isItem(AccessibilityElementsPort &elements, const AccessibilityElement &element,
                                EditAction action)
{
    const AccessibilityValue named = elements.copyAttribute(element, u"AXIdentifier"_s);
    if (const auto *const name = std::get_if<QString>(&named); name != nullptr && *name == identifier(action)) {
        return true;
    }
    const AccessibilityValue key = elements.copyAttribute(element, u"AXMenuItemCmdChar"_s);
    const auto *const character = std::get_if<QString>(&key);
    if (character == nullptr || character->toUpper() != commandCharacter(action)) {
        return false;
    }
    const AccessibilityValue modifiers = elements.copyAttribute(element, u"AXMenuItemCmdModifiers"_s);
    const auto *const bits = std::get_if<qint64>(&modifiers);
    return bits != nullptr && *bits == commandAlone;
}

AccessibilityElement AppMenuItemService::elementValue(AccessibilityElementsPort &elements,
                                                      const AccessibilityElement &element, const QString &attribute)
{
    const AccessibilityValue value = elements.copyAttribute(element, attribute);
    const auto *const held = std::get_if<AccessibilityElement>(&value);
    return held == nullptr ? nullptr : *held;
}

std::vector<AccessibilityElement> AppMenuItemService::children(AccessibilityElementsPort &elements,
                                                               const AccessibilityElement &element)
{
    AccessibilityValue value = elements.copyAttribute(element, u"AXChildren"_s);
    auto *const list = std::get_if<std::vector<AccessibilityElement>>(&value);
    return list == nullptr ? std::vector<AccessibilityElement>() : std::move(*list);
}

bool AppMenuItemService::isEnabled(AccessibilityElementsPort &elements, const AccessibilityElement &element)
{
    const AccessibilityValue value = elements.copyAttribute(element, u"AXEnabled"_s);
    const auto *const enabled = std::get_if<bool>(&value);
    return enabled == nullptr || *enabled;
}

} // namespace orvesa
