#pragma once

// Accessibility elements and their attributes, in the vocabulary of the macOS accessibility interface
// ("AXFocusedUIElement", "AXSelectedText", "AXMenuBar", "AXChildren", "AXPress").
//
// Main thread. Elements are shared handles; they may outlive the object they stand for, whose attributes then have no
// value. A call costs at most 250 ms when the application in question does not answer; any failure is "no value".

#include <QString>

#include <memory>
#include <variant>
#include <vector>

namespace orvesa {

/// Opaque to portable code; each adapter derives its own handle.
class AccessibilityElementHandle {
public:
    virtual ~AccessibilityElementHandle() = default;
};

using AccessibilityElement = std::shared_ptr<const AccessibilityElementHandle>;

/// No value, text, a Boolean, an integer, an element, or a list of elements.
using AccessibilityValue =
    std::variant<std::monostate, QString, bool, qint64, AccessibilityElement, std::vector<AccessibilityElement>>;

class AccessibilityElementsPort {
public:
    virtual ~AccessibilityElementsPort() = default;

    /// The element from which the focused element of the whole desktop is reached.
    [[nodiscard]] virtual AccessibilityElement systemWide() = 0;
    /// The application element of a process.
    [[nodiscard]] virtual AccessibilityElement application(qint64 processIdentifier) = 0;
    [[nodiscard]] virtual AccessibilityValue copyAttribute(const AccessibilityElement &element,
                                                           const QString &attribute) = 0;
    /// Whether the action was accepted; not whether it had an effect.
    virtual bool performAction(const AccessibilityElement &element, const QString &action) = 0;
};

} // namespace orvesa
