#include "Platform/linux/ATSPIElements.h"

#include "Platform/linux/ATSPIElementHandle.h"
#include "Platform/linux/ATSPIFocus.h"
#include "Platform/linux/ATSPISelection.h"
#include "Platform/linux/X11TerminalSelection.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// How many applications are remembered.
constexpr std::size_t mostApplications = 64;

} // namespace

ATSPIElements::ATSPIElements(ATSPIBus &bus, const WorkspacePort &workspace, X11TerminalSelection *terminals)
    : m_bus(bus), m_workspace(workspace), m_terminals(terminals)
{
}

ATSPIElements::~ATSPIElements() = default;

AccessibilityElement ATSPIElements::systemWide()
{
    const auto client = m_bus.newClient();
    return client ? std::make_shared<ATSPIElementHandle>(ATSPIElementHandle::SystemWide{}, client) : nullptr;
}

AccessibilityElement ATSPIElements::application(qint64 processIdentifier)
{
    const auto client = m_bus.client();
    return client ? std::make_shared<ATSPIElementHandle>(ATSPIElementHandle::Application{processIdentifier}, client)
                  : nullptr;
}

const std::map<QString, ATSPIElements::Reader> &ATSPIElements::readers()
{
    static const std::map<QString, Reader> table{
        {u"AXFocusedUIElement"_s, &ATSPIElements::focusedElement},
        {u"AXSelectedText"_s, &ATSPIElements::selectedText},
        {u"AXMenuBar"_s, &ATSPIElements::menuBar},
        {u"AXChildren"_s, &ATSPIElements::children},
        {u"AXIdentifier"_s, &ATSPIElements::identifier},
        {u"AXMenuItemCmdChar"_s, &ATSPIElements::commandCharacter},
        {u"AXMenuItemCmdModifiers"_s, &ATSPIElements::commandModifiers},
        {u"AXEnabled"_s, &ATSPIElements::isEnabled},
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
    if (handle == nullptr || action != "AXPress"_L1) {
        return false;
    }
    // What is left of the capture's time may be nothing, and was for finding out. The action has time of its own; but
    // whoever does not answer now would do it whenever it goes on, when nobody is waiting for it any more.
    ATSPIClient client = handle->client()->another(ATSPIBus::callBound);
    ATSPIReference performer;
    int place = 0;
    if (const auto *const command = std::get_if<ATSPIElementHandle::Command>(&handle->target())) {
        // Asked for only now: the places move with what can be used, and what was in one a moment ago may be "cut" now.
        const auto copy = ATSPIMenus(client).copyCommand(command->element);
        if (!copy || !copy->action) {
            return false;
        }
        performer = command->element;
        place = *copy->action;
    } else if (const auto *const item = std::get_if<ATSPIMenuItem>(&handle->target())) {
        performer = item->element;
        (void)client.states(performer);
    } else if (const auto *const reference = std::get_if<ATSPIReference>(&handle->target())) {
        performer = *reference;
        (void)client.states(performer);
    } else {
        return false;
    }
    const auto answer = client.call(performer, u"Action"_s, u"DoAction"_s, {place});
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
    if (!focused && m_terminals != nullptr && !m_applications.contains(*process) && m_terminals->isTerminal(*process)) {
        return AccessibilityElement(
            std::make_shared<ATSPIElementHandle>(ATSPIElementHandle::Terminal{*process}, element.client()));
    }
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
        auto focused = focusedStill(application, client);
        if (!focused) {
            focused = find(application, client);
        }
        // Of a process with several names, a young one may have had but the one without windows.
        if (focused || (application.window && client.processIdentifier(application.busName) == processIdentifier)) {
            return focused;
        }
        m_applications.erase(known);
    }
    const auto names = busNames(client);
    const auto own = names.find(processIdentifier);
    if (own == names.end()) {
        return std::nullopt;
    }
    Application application{withWindows(own->second, client), std::nullopt, std::nullopt};
    auto focused = find(application, client);
    if (m_applications.size() >= mostApplications) {
        m_applications.clear(); // most of them have ended
    }
    m_applications.insert_or_assign(processIdentifier, std::move(application));
    return focused;
}

std::optional<ATSPIReference> ATSPIElements::find(Application &application, ATSPIClient &client)
{
    const auto found = ATSPIFocus(client).find(application.busName, application.window);
    application.focused = found && found->isOnlyClaim ? std::optional(found->element) : std::nullopt;
    return found ? std::optional(found->element) : std::nullopt;
}

std::optional<ATSPIReference> ATSPIElements::focusedStill(Application &application, ATSPIClient &client)
{
    if (!application.window || !application.focused) {
        return std::nullopt;
    }
    auto confirmation = ATSPIFocus(client).confirm(*application.window, *application.focused);
    if (confirmation.still == ATSPIFocus::Still::focused) {
        m_ahead = Ahead{*application.focused, std::move(confirmation.selection), {}};
        m_ahead->age.start();
        return application.focused;
    }
    if (confirmation.still == ATSPIFocus::Still::inAnotherWindow) {
        application.window.reset();
    }
    return std::nullopt;
}

AccessibilityValue ATSPIElements::selectedText(const ATSPIElementHandle &element)
{
    if (const auto *const terminal = std::get_if<ATSPIElementHandle::Terminal>(&element.target())) {
        auto text = m_terminals->text(terminal->processIdentifier);
        return text ? AccessibilityValue(*std::move(text)) : AccessibilityValue();
    }
    const auto *const reference = std::get_if<ATSPIReference>(&element.target());
    if (reference == nullptr) {
        return {};
    }
    ATSPISelection selection(*element.client());
    const auto ahead = std::exchange(m_ahead, std::nullopt);
    const bool isAnswered = ahead && ahead->element == *reference && !ahead->age.hasExpired(aheadLife.count());
    auto text = isAnswered ? selection.read(*reference, ahead->answers) : selection.read(*reference);
    return text ? AccessibilityValue(*std::move(text)) : AccessibilityValue();
}

AccessibilityValue ATSPIElements::menuBar(const ATSPIElementHandle &element)
{
    const auto *const process = std::get_if<ATSPIElementHandle::Application>(&element.target());
    if (process == nullptr || process->processIdentifier == QCoreApplication::applicationPid()) {
        return {};
    }
    const std::shared_ptr<ATSPIClient> &client = element.client();
    const auto made = [&client](std::vector<AccessibilityElement> children) {
        return AccessibilityElement(
            std::make_shared<ATSPIElementHandle>(ATSPIElementHandle::Made{std::move(children)}, client));
    };
    // The focus, since its own command stands in for a menu; and it tells which window is the active one.
    const auto focused = focusedElement(process->processIdentifier, *client);
    const auto application = m_applications.find(process->processIdentifier);
    if (application == m_applications.end() || !application->second.window) {
        return {};
    }
    if (const auto bar = ATSPIMenus(*client).menuBar(*application->second.window)) {
        // On macOS the system's menu and the program's own come before the first one here.
        std::vector<AccessibilityElement> menus{made({}), made({})};
        std::ranges::move(items(*bar, client), std::back_inserter(menus));
        return menus.size() > 2 ? AccessibilityValue(made(std::move(menus))) : AccessibilityValue();
    }
    const auto copy = focused ? ATSPIMenus(*client).copyCommand(*focused) : std::nullopt;
    if (!copy) {
        return {};
    }
    const auto command =
        std::make_shared<ATSPIElementHandle>(ATSPIElementHandle::Command{*focused, copy->action.has_value()}, client);
    return made({made({AccessibilityElement(command)})});
}

std::vector<AccessibilityElement> ATSPIElements::items(const ATSPIReference &menu,
                                                       const std::shared_ptr<ATSPIClient> &client)
{
    std::vector<AccessibilityElement> elements;
    for (ATSPIMenuItem &item : ATSPIMenus(*client).items(menu)) {
        elements.push_back(std::make_shared<ATSPIElementHandle>(std::move(item), client));
    }
    return elements;
}

AccessibilityValue ATSPIElements::children(const ATSPIElementHandle &element)
{
    if (const auto *const made = std::get_if<ATSPIElementHandle::Made>(&element.target())) {
        return made->children;
    }
    const auto *const item = std::get_if<ATSPIMenuItem>(&element.target());
    if (item == nullptr || !item->hasChildren) {
        return {};
    }
    return items(item->element, element.client());
}

AccessibilityValue ATSPIElements::identifier(const ATSPIElementHandle &element)
{
    // The identifier that macOS gives the copy command of every program.
    const QString copy = u"copy:"_s;
    if (std::holds_alternative<ATSPIElementHandle::Command>(element.target())) {
        return copy;
    }
    const auto *const item = std::get_if<ATSPIMenuItem>(&element.target());
    if (item == nullptr || item->identifier.isEmpty()) {
        return {};
    }
    return item->isNamedCopy() ? copy : item->identifier;
}

AccessibilityValue ATSPIElements::commandCharacter(const ATSPIElementHandle &element)
{
    const auto *const item = std::get_if<ATSPIMenuItem>(&element.target());
    return item != nullptr && item->accelerator ? AccessibilityValue(item->accelerator->character)
                                                : AccessibilityValue();
}

AccessibilityValue ATSPIElements::commandModifiers(const ATSPIElementHandle &element)
{
    const auto *const item = std::get_if<ATSPIMenuItem>(&element.target());
    return item != nullptr && item->accelerator ? AccessibilityValue(item->accelerator->modifiers)
                                                : AccessibilityValue();
}

AccessibilityValue ATSPIElements::isEnabled(const ATSPIElementHandle &element)
{
    if (const auto *const command = std::get_if<ATSPIElementHandle::Command>(&element.target())) {
        return command->isEnabled;
    }
    const auto *const item = std::get_if<ATSPIMenuItem>(&element.target());
    const auto enabled = item != nullptr ? ATSPIMenus(*element.client()).isEnabled(item->element) : std::nullopt;
    return enabled ? AccessibilityValue(*enabled) : AccessibilityValue();
}

bool ATSPIElements::isFocusNoTerminal(qint64 processIdentifier)
{
    const auto known = m_bus.client();
    if (!known || processIdentifier == QCoreApplication::applicationPid()) {
        return false;
    }
    const auto focused = focusedElement(processIdentifier, *known);
    if (!focused) {
        return false;
    }
    // A terminal drawn by a web page is an ordinary text field to everybody.
    const auto toolkit =
        known->property({focused->busName, u"/org/a11y/atspi/accessible/root"_s}, u"Application"_s, u"ToolkitName"_s);
    const auto role = known->role(*focused);
    return toolkit && toolkit->toString() != "Chromium"_L1 && role && *role != ATSPIRole::terminal;
}

std::map<qint64, std::vector<QString>> ATSPIElements::busNames(ATSPIClient &client)
{
    std::vector<QString> names;
    for (const ATSPIReference &application :
         client.children({u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s})) {
        names.push_back(application.busName);
    }
    const auto processes = client.processIdentifiers(names);
    std::map<qint64, std::vector<QString>> result;
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (processes[index]) {
            result[*processes[index]].push_back(names[index]);
        }
    }
    return result;
}

QString ATSPIElements::withWindows(const std::vector<QString> &names, ATSPIClient &client)
{
    if (names.size() < 2) {
        return names.front();
    }
    const auto found = std::ranges::find_if(names, [&client](const QString &name) {
        return !client.children({name, u"/org/a11y/atspi/accessible/root"_s}).empty();
    });
    return found == names.end() ? names.front() : *found;
}

void ATSPIElements::warmUp()
{
    const auto known = m_bus.client();
    if (!known) {
        return;
    }
    for (const auto &[process, names] : busNames(*known)) {
        // Of one with several names only its first read tells which is the right one.
        const bool isClear = names.size() == 1 && process != QCoreApplication::applicationPid();
        if (isClear && m_applications.size() < mostApplications) {
            m_applications.try_emplace(process, Application{names.front(), std::nullopt, std::nullopt});
        }
    }
}

} // namespace orvesa
