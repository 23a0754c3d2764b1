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

/// The process of the application on the bus of which a window says that it is the active one.
std::optional<qint64> activeApplication(ATSPIClient &client)
{
    std::vector<QString> names;
    for (const ATSPIReference &application : client.children({u"org.a11y.atspi.Registry"_s, rootPath()})) {
        names.push_back(application.busName);
    }
    const auto processes = client.processIdentifiers(names);
    std::vector<ATSPIClient::Call> questions;
    std::vector<qint64> asked;
    for (std::size_t index = 0; index < names.size(); ++index) {
        // This process could not answer while it waits.
        if (processes[index] && *processes[index] != QCoreApplication::applicationPid()) {
            questions.push_back({{names[index], rootPath()}, u"Accessible"_s, u"GetChildren"_s, {}});
            asked.push_back(*processes[index]);
        }
    }
    const auto answers = client.callTogether(questions);
    std::vector<ATSPIReference> windows;
    std::vector<qint64> owners;
    for (std::size_t index = 0; index < answers.size(); ++index) {
        for (const ATSPIReference &window : ATSPIClient::referencesIn(answers[index])) {
            windows.push_back(window);
            owners.push_back(asked[index]);
        }
    }
    const auto states = client.states(windows);
    const auto active =
        std::ranges::find_if(states, [](const ATSPIStateSet &state) { return state.has(ATSPIState::active); });
    return active == states.end() ? std::nullopt
                                  : std::optional(owners[static_cast<std::size_t>(active - states.begin())]);
}

} // namespace

WaylandWorkspace::WaylandWorkspace(WorkspacePort &x11, ATSPIBus &bus) : m_x11(x11), m_bus(bus) {}

std::optional<qint64> WaylandWorkspace::frontmostApplication() const
{
    // Compositors take the active window off the X server's root while a window of Wayland has the keyboard.
    if (const auto process = m_x11.frontmostApplication(); process || !WaylandSession::isRunning()) {
        return process;
    }
    const auto client = m_bus.client();
    return client ? activeApplication(*client) : std::nullopt;
}

bool WaylandWorkspace::open(const QUrl &url)
{
    return m_x11.open(url);
}

} // namespace orvesa
