#include "Platform/linux/ATSPIElements.h"

#include "Platform/linux/ATSPIElementHandle.h"
#include "Platform/linux/ATSPIFocus.h"
#include "Platform/linux/ATSPISelection.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

AccessibilityElement element(ATSPIElementHandle::Target target, ATSPIBus &bus)
{
    auto connection = bus.connection();
    if (!connection) {
        return nullptr;
    }
    return std::make_shared<ATSPIElementHandle>(std::move(target),
                                                std::make_shared<ATSPIClient>(*std::move(connection)));
}

} // namespace

ATSPIElements::ATSPIElements(ATSPIBus &bus, const WorkspacePort &workspace) : m_bus(bus), m_workspace(workspace) {}

ATSPIElements::~ATSPIElements() = default;

AccessibilityElement ATSPIElements::systemWide()
{
    return element(ATSPIElementHandle::SystemWide{}, m_bus);
}

AccessibilityElement ATSPIElements::application(qint64 processIdentifier)
{
    return element(ATSPIElementHandle::Application{processIdentifier}, m_bus);
}

const std::map<QString, ATSPIElements::Reader> &ATSPIElements::readers()
{
    static const std::map<QString, Reader> table{
        {u"AXFocusedUIElement"_s, &ATSPIElements::focusedElement},
        {u"AXSelectedText"_s, &ATSPIElements::selectedText},
    };
    return table;
}

AccessibilityValue ATSPIElements::copyAttribute(const AccessibilityElement &element, const QString &attribute)
{
    const auto *const handle = dynamic_cast<const ATSPIElementHandle *>(element.get());
    const auto reader = readers().find(attribute);
    if (handle == nullptr || reader == readers().end()) {
        return {};
    }
    return (this->*reader->second)(*handle);
}

bool ATSPIElements::performAction(const AccessibilityElement &element, const QString &action)
{
    // AT-SPI names an element's one main action as its toolkit likes ("click", "Press", "activate"); it comes first.
    const auto *const handle = dynamic_cast<const ATSPIElementHandle *>(element.get());
    const auto *const reference = handle == nullptr ? nullptr : std::get_if<ATSPIReference>(&handle->target());
    if (reference == nullptr || action != "AXPress"_L1) {
        return false;
    }
    const auto answer = handle->client()->call(*reference, u"Action"_s, u"DoAction"_s, {0});
    return answer && !answer->isEmpty() && answer->constFirst().toBool();
}

AccessibilityValue ATSPIElements::focusedElement(const ATSPIElementHandle &element)
{
    std::optional<qint64> process;
    if (const auto *const application = std::get_if<ATSPIElementHandle::Application>(&element.target())) {
        process = application->processIdentifier;
    } else if (std::holds_alternative<ATSPIElementHandle::SystemWide>(element.target())) {
        process = m_workspace.frontmostApplication();
    }
    if (!process || *process == QCoreApplication::applicationPid()) {
        return {};
    }
    const auto focused = focusedElement(*process, *element.client());
    if (!focused) {
        return {};
    }
    return AccessibilityElement(std::make_shared<ATSPIElementHandle>(*focused, element.client()));
}

std::optional<ATSPIReference> ATSPIElements::focusedElement(qint64 processIdentifier, ATSPIClient &client)
{
    // Bus names are never given out twice: a remembered one that has an answer is still that process.
    if (const auto known = m_applications.find(processIdentifier); known != m_applications.end()) {
        Application &application = known->second;
        auto focused = ATSPIFocus(client).find(application.busName, application.window);
        if (focused || client.processIdentifier(application.busName) == processIdentifier) {
            return focused;
        }
        m_applications.erase(known);
    }
    Application application{busName(processIdentifier, client), std::nullopt};
    if (application.busName.isEmpty()) {
        return std::nullopt;
    }
    auto focused = ATSPIFocus(client).find(application.busName, application.window);
    m_applications.insert_or_assign(processIdentifier, std::move(application));
    return focused;
}

AccessibilityValue ATSPIElements::selectedText(const ATSPIElementHandle &element)
{
    const auto *const reference = std::get_if<ATSPIReference>(&element.target());
    if (reference == nullptr) {
        return {};
    }
    auto text = ATSPISelection(*element.client()).read(*reference);
    return text ? AccessibilityValue(*std::move(text)) : AccessibilityValue();
}

QString ATSPIElements::busName(qint64 processIdentifier, ATSPIClient &client)
{
    std::vector<QString> names;
    for (const ATSPIReference &application :
         client.children({u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s})) {
        names.push_back(application.busName);
    }
    const auto processes = client.processIdentifiers(names);
    const auto found = std::ranges::find(processes, std::optional(processIdentifier));
    return found == processes.end() ? QString() : names[static_cast<std::size_t>(found - processes.begin())];
}

void ATSPIElements::warmUp()
{
    (void)m_bus.connection();
}

} // namespace orvesa
