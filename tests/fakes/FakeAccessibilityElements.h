#pragma once

// A small accessibility tree that a test builds element by element. Main thread. Elements must not outlive it.

#include "Platform/AccessibilityElementsPort.h"

#include <functional>
#include <map>
#include <utility>

namespace orvesa {

class FakeAccessibilityElements final : public AccessibilityElementsPort {
public:
    using Attributes = std::map<QString, AccessibilityValue>;

    struct Action {
        AccessibilityElement element;
        QString name;
        bool operator==(const Action &) const = default;
    };

    FakeAccessibilityElements();

    [[nodiscard]] AccessibilityElement systemWide() override { return m_systemWide; }
    [[nodiscard]] AccessibilityElement application(qint64 processIdentifier) override;
    [[nodiscard]] AccessibilityValue copyAttribute(const AccessibilityElement &element,
                                                   const QString &attribute) override;
    bool performAction(const AccessibilityElement &element, const QString &action) override;

    [[nodiscard]] AccessibilityElement makeElement(Attributes attributes = {});
    void setAttribute(const AccessibilityElement &element, const QString &attribute, AccessibilityValue value);
    void setApplication(qint64 processIdentifier, AccessibilityElement element);
    /// Every application has gone: elements that are still held stand for nothing, and are refused actions.
    void endApplications();
    /// Focuses a new element with this "AXSelectedText".
    void focusSelectedText(const QString &text);
    /// Called for every action; its answer is performAction()'s. Without one, actions are accepted.
    void setActionHandler(std::function<bool(const Action &)> handler);

    [[nodiscard]] const std::vector<Action> &actions() const { return m_actions; }
    /// Every attribute that was asked for, in order.
    [[nodiscard]] const std::vector<QString> &reads() const { return m_reads; }

private:
    std::map<AccessibilityElement, Attributes> m_attributes;
    AccessibilityElement m_systemWide; ///< made in m_attributes, so it comes after it
    std::map<qint64, AccessibilityElement> m_applications;
    std::function<bool(const Action &)> m_actionHandler;
    std::vector<Action> m_actions;
    std::vector<QString> m_reads;
    bool m_hasApplications = true;
};

} // namespace orvesa
