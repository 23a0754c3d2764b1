#include "fakes/FakeAccessibilityElements.h"

namespace orvesa {

using namespace Qt::StringLiterals;

FakeAccessibilityElements::FakeAccessibilityElements() : m_systemWide(makeElement()) {}

AccessibilityElement FakeAccessibilityElements::application(qint64 processIdentifier)
{
    const auto found = m_applications.find(processIdentifier);
    return found == m_applications.end() ? makeElement() : found->second;
}

AccessibilityValue FakeAccessibilityElements::copyAttribute(const AccessibilityElement &element,
                                                            const QString &attribute)
{
    m_reads.push_back(attribute);
    const auto attributes = m_attributes.find(element);
    if (attributes == m_attributes.end()) {
        return {};
    }
    const auto found = attributes->second.find(attribute);
    return found == attributes->second.end() ? AccessibilityValue() : found->second;
}

bool FakeAccessibilityElements::performAction(const AccessibilityElement &element, const QString &action)
{
    m_actions.push_back({element, action});
    // A copy, because the handler may make this grow.
    const Action performed = m_actions.back();
    return m_hasApplications && element != nullptr && (!m_actionHandler || m_actionHandler(performed));
}

AccessibilityElement FakeAccessibilityElements::makeElement(Attributes attributes)
{
    auto element = std::make_shared<const AccessibilityElementHandle>();
    m_attributes.emplace(element, std::move(attributes));
    return element;
}

void FakeAccessibilityElements::setAttribute(const AccessibilityElement &element, const QString &attribute,
                                             AccessibilityValue value)
{
    m_attributes[element][attribute] = std::move(value);
}

void FakeAccessibilityElements::setApplication(qint64 processIdentifier, AccessibilityElement element)
{
    m_applications[processIdentifier] = std::move(element);
}

void FakeAccessibilityElements::endApplications()
{
    m_hasApplications = false;
    m_attributes.clear();
    m_applications.clear();
}

void FakeAccessibilityElements::focusSelectedText(const QString &text)
{
    setAttribute(m_systemWide, u"AXFocusedUIElement"_s, makeElement({{u"AXSelectedText"_s, text}}));
}

void FakeAccessibilityElements::setActionHandler(std::function<bool(const Action &)> handler)
{
    m_actionHandler = std::move(handler);
}

} // namespace orvesa
