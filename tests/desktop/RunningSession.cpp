#include "desktop/RunningSession.h"

#include <QDir>
#include <QProcessEnvironment>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds betweenLooks{50};

QString accessibilityBus(BusClient &bus)
{
    return bus.call(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s)
        .arguments()
        .value(0)
        .toString();
}

bool isShowing(const Accessible &accessible)
{
    return accessible.has(AccessibleState::showing);
}

} // namespace

RunningSession::RunningSession()
    : m_sessionBusAddress(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS")), m_bus(m_sessionBusAddress),
      m_session(qEnvironmentVariable("DISPLAY")), m_keyboard(m_session), m_pointer(m_session), m_windows(m_session),
      m_selections(m_session), m_accessibles(accessibilityBus(m_bus), Listening::none), m_tray(m_sessionBusAddress)
{
    m_look.start(betweenLooks);
}

QString RunningSession::windowManagerName()
{
    const std::vector<quint32> check = m_windows.cardinals(m_windows.root(), "_NET_SUPPORTING_WM_CHECK");
    return check.size() == 1 ? m_windows.title(check.front()) : QString();
}

qint64 RunningSession::awaitProduct(std::chrono::milliseconds deadline)
{
    const QString name = QStringLiteral(ORVESA_BUNDLE_IDENTIFIER);
    m_bus.awaitOwner(name, deadline);
    m_product = m_bus
                    .call(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                          u"GetConnectionUnixProcessID"_s, {name})
                    .arguments()
                    .value(0)
                    .toLongLong();
    return m_product;
}

Process &RunningSession::launch(const QString &program, const QStringList &arguments)
{
    m_processes.push_back(
        std::make_unique<Process>(program, arguments, QProcessEnvironment::systemEnvironment(), QDir::homePath()));
    return *m_processes.back();
}

ProcessResult RunningSession::runToEnd(const QString &program, const QStringList &arguments,
                                       std::chrono::milliseconds deadline)
{
    Process process(program, arguments, QProcessEnvironment::systemEnvironment(), QDir::homePath());
    process.closeInput();
    return process.awaitEnd(deadline);
}

Accessible RunningSession::panel() const
{
    for (const Accessible &window : m_accessibles.windows(m_product))
        if (isShowing(window) && window.find([](const Accessible &accessible) {
                return accessible.name() == u"Result"_s && isShowing(accessible);
            }))
            return window;
    return {};
}

QString RunningSession::panelText(const QString &field) const
{
    return panel()
        .find([&](const Accessible &accessible) {
            return accessible.name() == field && isShowing(accessible) && !accessible.text().isEmpty() &&
                   accessible.text() != field;
        })
        .text();
}

xcb_window_t RunningSession::panelWindow() const
{
    for (const xcb_window_t window : m_windows.mapped({.pid = m_product}))
        if (m_windows.atoms(window, "_NET_WM_WINDOW_TYPE").contains("_NET_WM_WINDOW_TYPE_UTILITY"))
            return window;
    return 0;
}

} // namespace orvesa::desktop
