#include "Platform/linux/WaylandWorkspace.h"

#include "Platform/linux/ATSPIBus.h"
#include "Platform/linux/ATSPIClient.h"
#include "Platform/linux/WaylandSession.h"

#include <QCoreApplication>

#include <algorithm>
#include <vector>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

QString rootPath()
{
    return u"/org/a11y/atspi/accessible/root"_s;
}

/// The application on the bus of which a window says that it is the active one.
std::optional<qint64> activeApplication(ATSPIClient &client)
{
    std::vector<ATSPIClient::Call> questions;
    for (const ATSPIReference &application : client.children({u"org.a11y.atspi.Registry"_s, rootPath()})) {
        questions.push_back({{application.busName, rootPath()}, u"Accessible"_s, u"GetChildren"_s, {}});
    }
    std::vector<ATSPIReference> windows;
    for (const auto &answer : client.callTogether(questions)) {
        const auto answered = ATSPIClient::referencesIn(answer);
        windows.insert(windows.end(), answered.begin(), answered.end());
    }
    const auto states = client.states(windows);
    for (std::size_t index = 0; index < states.size(); ++index) {
        if (!states[index].has(ATSPIState::active)) {
            continue;
        }
        const auto process = client.processIdentifier(windows[index].busName);
        if (process && *process != QCoreApplication::applicationPid()) {
            return process;
        }
    }
    return std::nullopt;
}

} // namespace

WaylandWorkspace::WaylandWorkspace(WorkspacePort &x11, ATSPIBus &bus) : m_x11(x11), m_bus(bus) {}

std::optional<qint64> WaylandWorkspace::frontmostApplication() const
{
    // Compositors take the active window off the X server's root while a window of Wayland has the keyboard.
    if (const auto process = m_x11.frontmostApplication(); process || !WaylandSession::isRunning()) {
        return process;
    }
    auto connection = m_bus.connection();
    if (!connection) {
        return std::nullopt;
    }
    ATSPIClient client(*std::move(connection));
    return activeApplication(client);
}

bool WaylandWorkspace::open(const QUrl &url)
{
    return m_x11.open(url);
}

} // namespace orvesa
