#include "desktop/Desktop.h"

#include "desktop/BusClient.h"
#include "desktop/DesktopEnvironment.h"
#include "desktop/DesktopGuard.h"
#include "desktop/DisplayPipe.h"
#include "desktop/MarkedProcesses.h"
#include "desktop/Monitors.h"
#include "desktop/XSession.h"

#include <QDBusVariant>
#include <QFile>
#include <QUuid>

#include <algorithm>
#include <cmath>
#include <ranges>

#include <fcntl.h>
#include <signal.h>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr auto markName = "ORVESA_DESKTOP";
constexpr double standardDotsPerInch = 96.0;

/// Set on the root window when Openbox has started. It says that it is there before it listens, and what comes in
/// between lies unread until something else comes: a window would not appear, a request would not be heard.
constexpr auto startedProperty = "_ORVESA_WINDOW_MANAGER_STARTED";
const QStringList openboxArguments{u"--sm-disable"_s, u"--startup"_s,
                                   u"xprop -root -format %1 32c -set %1 1"_s.arg(QString::fromLatin1(startedProperty))};

template <typename T>
T &partOf(const std::unique_ptr<T> &part, const QString &name)
{
    if (!part)
        throw DesktopError(u"this desktop has no %1"_s.arg(name));
    return *part;
}

} // namespace

Desktop::Desktop(const DesktopOptions &options)
    : m_options(options), m_mark(QUuid::createUuid().toString(QUuid::WithoutBraces)),
      m_environment(cleanEnvironment(m_folders, options))
{
    m_environment.insert(QString::fromLatin1(markName), m_mark);
    m_guard = std::make_unique<DesktopGuard>(QString::fromLatin1(markName) + u'=' + m_mark, m_folders.top());
    try {
        startServer();
        if (options.sessionBus == SessionBus::present)
            startSessionBus();
        if (options.windowManager != WindowManager::none)
            startWindowManager();
        if (options.accessibility != Accessibility::none && options.sessionBus == SessionBus::present)
            startAccessibility();
        if (options.keyStore != KeyStore::absent && options.sessionBus == SessionBus::present)
            startKeyStore();
        startTray(options.tray);
    } catch (...) {
        endAll();
        throw;
    }
}

Desktop::~Desktop()
{
    endAll();
}

Process &Desktop::start(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment,
                        std::function<void()> inChild)
{
    m_processes.push_back(
        std::make_unique<Process>(program, arguments, environment, m_folders.home(), std::move(inChild)));
    m_guard->add(m_processes.back()->pid());
    return *m_processes.back();
}

void Desktop::end(Process *&process)
{
    if (process == nullptr)
        return;
    process->terminate();
    m_guard->forget(process->pid());
    std::erase_if(m_processes, [&](const auto &owned) { return owned.get() == process; });
    process = nullptr;
}

void Desktop::endAll()
{
    // All are asked at once, the programs before the parts they run on; whoever does not go is killed.
    constexpr std::chrono::milliseconds grace{2'000};
    for (const auto &process : std::views::reverse(m_processes))
        process->requestEnd();
    const auto allGone = [this] {
        return std::ranges::none_of(m_processes, [](const auto &process) { return process->isRunning(); });
    };
    if (!happensWithin(grace, allGone))
        for (const auto &process : m_processes)
            process->kill();
    for (const auto &process : m_processes)
        m_guard->forget(process->pid());
    m_processes.clear();
    m_guard.reset();
}

void Desktop::startServer()
{
    DisplayPipe pipe;
    const bool hasMonitors = m_options.server == Server::monitors;
    const QString screen = u"%1x%2x24"_s.arg(m_options.screenSize.width()).arg(m_options.screenSize.height());
    const QStringList picture =
        hasMonitors ? Monitors::serverArguments(m_folders)
                    : QStringList{u"-screen"_s, u"0"_s, screen, u"+extension"_s, u"RANDR"_s, u"+extension"_s, u"GLX"_s};
    const double dotsPerInch = standardDotsPerInch * m_options.scale;
    const QStringList arguments{
        u"-displayfd"_s, QString::number(pipe.writeEnd()),         u"-nolisten"_s, u"tcp"_s, u"-noreset"_s,
        u"-dpi"_s,       QString::number(std::lround(dotsPerInch))};
    const Process &server = start(hasMonitors ? u"Xorg"_s : u"Xvfb"_s, picture + arguments + m_options.serverArguments,
                                  m_environment, [inherited = pipe.writeEnd()] { fcntl(inherited, F_SETFD, 0); });
    m_display = pipe.awaitDisplay(server);
    m_environment.insert(u"DISPLAY"_s, m_display);
    m_session = std::make_unique<XSession>(m_display);
    m_keyboard = std::make_unique<Keyboard>(*m_session);
    m_pointer = std::make_unique<Pointer>(*m_session);
    m_windows = std::make_unique<Windows>(*m_session);
    m_selections = std::make_unique<Selections>(*m_session);
    paintBackground();
    if (m_options.scale != 1.0) {
        const QByteArray resources = "Xft.dpi:\t" + QByteArray::number(dotsPerInch) + '\n';
        xcb_change_property(m_session->connection(), XCB_PROP_MODE_REPLACE, m_session->root(),
                            XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 8, static_cast<quint32>(resources.size()),
                            resources.constData());
        m_session->synchronize();
    }
}

void Desktop::paintBackground()
{
    // A plain tone in which the edges and shadows of dark and of light windows can be seen.
    constexpr quint32 tone = 0x5b6b7a;
    xcb_change_window_attributes(m_session->connection(), m_session->root(), XCB_CW_BACK_PIXEL, &tone);
    xcb_clear_area(m_session->connection(), 0, m_session->root(), 0, 0, 0, 0);
    m_session->synchronize();
}

void Desktop::startSessionBus()
{
    Process &bus = start(u"dbus-daemon"_s,
                         {u"--config-file=%1"_s.arg(m_folders.writeBusConfiguration()), u"--nofork"_s, u"--nopidfile"_s,
                          u"--nosyslog"_s, u"--print-address"_s},
                         [this] {
                             // Services that it starts are told the address by it.
                             QProcessEnvironment environment = m_environment;
                             environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
                             return environment;
                         }());
    m_sessionBusAddress = QString::fromUtf8(bus.readLine());
    m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_sessionBusAddress);
}

void Desktop::startWindowManager()
{
    const bool isXfce = m_options.windowManager == WindowManager::xfwm4;
    const Process &manager = isXfce ? start(u"xfwm4"_s, {u"--compositor=off"_s}, m_environment)
                                    : start(u"openbox"_s, openboxArguments, m_environment);
    const auto isUp = [&] {
        const std::vector<quint32> check = m_windows->cardinals(m_session->root(), "_NET_SUPPORTING_WM_CHECK");
        const bool isSaid =
            check.size() == 1 && m_windows->cardinals(check.front(), "_NET_SUPPORTING_WM_CHECK") == check;
        const bool isStarted = isXfce || !m_windows->cardinals(m_session->root(), startedProperty).empty();
        return (isSaid && isStarted) || !manager.isRunning();
    };
    waitUntil(isUp, u"the window manager"_s);
    if (!manager.isRunning())
        throw DesktopError(u"the window manager ended: %1"_s.arg(QString::fromUtf8(manager.standardError())));
}

void Desktop::startAccessibility()
{
    m_accessibilityProcess = &start(u"/usr/libexec/at-spi-bus-launcher"_s, {u"--launch-immediately"_s}, m_environment);
    BusClient bus(m_sessionBusAddress);
    bus.awaitOwner(u"org.a11y.Bus"_s);
    m_accessibilityBusAddress = bus.call(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s)
                                    .arguments()
                                    .value(0)
                                    .toString();
    setAccessibilityEnabled(m_options.accessibility == Accessibility::enabled);
    m_accessibles = std::make_unique<AccessibleTree>(m_accessibilityBusAddress, m_options.listening);
}

void Desktop::setAccessibilityEnabled(bool enabled)
{
    BusClient(m_sessionBusAddress)
        .call(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.freedesktop.DBus.Properties"_s, u"Set"_s,
              {u"org.a11y.Status"_s, u"IsEnabled"_s, QVariant::fromValue(QDBusVariant(enabled))});
}

void Desktop::endAccessibility()
{
    const qint64 bus = processOf("dbus-daemon", "--config-file=/usr/share/defaults/at-spi2/accessibility.conf");
    if (bus == 0 || ::kill(static_cast<pid_t>(bus), SIGKILL) != 0)
        throw DesktopError(u"the accessibility bus is not there to be ended"_s);
    m_accessibles.reset();
    end(m_accessibilityProcess);
    BusClient(m_sessionBusAddress).awaitNoOwner(u"org.a11y.Bus"_s);
}

void Desktop::startAccessibilityAnew()
{
    startAccessibility();
}

qint64 Desktop::processOf(const QByteArray &program, const QByteArray &argument) const
{
    for (const qint64 pid : runningProcesses()) {
        QFile file(u"/proc/%1/cmdline"_s.arg(pid));
        if (!file.open(QFile::ReadOnly))
            continue;
        const QList<QByteArray> arguments = file.readAll().split('\0');
        if (arguments.first().endsWith(program) && (argument.isEmpty() || arguments.contains(argument)))
            return pid;
    }
    return 0;
}

void Desktop::startKeyStoreDaemon(const QStringList &arguments, const QByteArray &input)
{
    Process &daemon = start(u"gnome-keyring-daemon"_s,
                            QStringList{u"--foreground"_s, u"--components=secrets"_s} + arguments, m_environment);
    daemon.write(input);
    daemon.closeInput();
    m_keyStoreProcess = &daemon;
    BusClient(m_sessionBusAddress).awaitOwner(u"org.freedesktop.secrets"_s);
}

void Desktop::startKeyStore()
{
    startKeyStoreDaemon({u"--unlock"_s}, QUuid::createUuid().toByteArray());
    if (m_options.keyStore == KeyStore::locked) {
        // Its collection exists now; without the password it comes up locked.
        stopKeyStore();
        startKeyStoreDaemon({}, {});
    }
    m_keyStore = std::make_unique<KeyStoreItems>(m_sessionBusAddress);
}

void Desktop::stopKeyStore()
{
    m_keyStore.reset();
    end(m_keyStoreProcess);
    BusClient(m_sessionBusAddress).awaitNoOwner(u"org.freedesktop.secrets"_s);
}

void Desktop::startTray(Tray tray)
{
    if (tray == Tray::embedding)
        startEmbeddingTray();
    else if (tray == Tray::statusNotifier && m_options.sessionBus == SessionBus::present)
        startNotifierTray();
}

void Desktop::startEmbeddingTray()
{
    const Process &tray = start(u"tint2"_s, {}, m_environment);
    m_trayProcess = m_processes.back().get();
    const xcb_atom_t selection = m_session->atom("_NET_SYSTEM_TRAY_S0");
    const auto isUp = [&] { // announced by a message to the root window
        const XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
            m_session->connection(), xcb_get_selection_owner(m_session->connection(), selection), nullptr));
        return (owner && owner->owner != XCB_NONE) || !tray.isRunning();
    };
    waitUntil(isUp, u"the tray"_s);
}

void Desktop::startNotifierTray()
{
    m_folders.writePanelConfiguration();
    m_trayProcess = &start(u"xfce4-panel"_s, {u"--disable-wm-check"_s}, m_environment);
    BusClient(m_sessionBusAddress).awaitOwner(u"org.kde.StatusNotifierWatcher"_s);
    m_tray = std::make_unique<TrayItems>(m_sessionBusAddress);
}

void Desktop::stopTray()
{
    m_tray.reset();
    end(m_trayProcess);
}

EnvironmentChanges Desktop::withoutSessionBus() const
{
    EnvironmentChanges changes{{u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=%1/no-bus"_s.arg(m_folders.top())}};
    if (!m_accessibilityBusAddress.isEmpty())
        changes.insert(u"AT_SPI_BUS_ADDRESS"_s, m_accessibilityBusAddress);
    return changes;
}

EnvironmentChanges Desktop::withoutDisplay() const
{
    return {{u"DISPLAY"_s, QString()}, {u"QT_QPA_PLATFORM"_s, QString()}};
}

Process &Desktop::launch(const QString &program, const QStringList &arguments, const EnvironmentChanges &changes)
{
    QProcessEnvironment environment = m_environment;
    for (const auto &[name, value] : changes.asKeyValueRange()) {
        if (value.isNull())
            environment.remove(name);
        else
            environment.insert(name, value);
    }
    return start(program, arguments, environment);
}

ProcessResult Desktop::runToEnd(const QString &program, const QStringList &arguments, const EnvironmentChanges &changes,
                                const QByteArray &input, std::chrono::milliseconds deadline)
{
    Process *process = &launch(program, arguments, changes);
    process->write(input);
    process->closeInput();
    ProcessResult result = process->awaitEnd(deadline);
    end(process);
    return result;
}

Keyboard &Desktop::keyboard()
{
    return *m_keyboard;
}

Pointer &Desktop::pointer()
{
    return *m_pointer;
}

Windows &Desktop::windows()
{
    return *m_windows;
}

Selections &Desktop::selections()
{
    return *m_selections;
}

AccessibleTree &Desktop::accessibles()
{
    return partOf(m_accessibles, u"accessibility bus"_s);
}

KeyStoreItems &Desktop::keyStore()
{
    return partOf(m_keyStore, u"key store"_s);
}

TrayItems &Desktop::tray()
{
    return partOf(m_tray, u"StatusNotifierItem tray"_s);
}

qint64 Desktop::guardProcess() const
{
    return m_guard->pid();
}

std::vector<qint64> Desktop::runningProcesses() const
{
    std::vector<qint64> found;
    for (const auto &entry : markedProcesses((QString::fromLatin1(markName) + u'=' + m_mark).toStdString()))
        found.push_back(entry.first);
    return found;
}

} // namespace orvesa::desktop
