#include "Platform/linux/X11PanelWindow.h"

#include "Platform/linux/ATSPIAnnouncement.h"
#include "Platform/linux/X11Struts.h"
#include "Platform/linux/XSettings.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>

#include <QtGui/qguiapplication_platform.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace orvesa {

namespace {

constexpr quint32 everyDesktop = 0xffffffff;
constexpr quint32 maximumStates = 64;

xcb_connection_t *qtConnection()
{
    const auto *const application =
        qGuiApp == nullptr ? nullptr : qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return application == nullptr ? nullptr : application->connection();
}

void setProperty(xcb_connection_t *connection, xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                 const std::vector<quint32> &values)
{
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, name, type, 32, static_cast<quint32>(values.size()),
                        values.data());
}

/// The states that the window carries already, which Qt's flags may have set, and ours.
std::vector<quint32> withPanelStates(X11Connection &atoms, xcb_connection_t *connection, xcb_window_t window)
{
    std::vector<quint32> states;
    const X11Reply<xcb_get_property_reply_t> present(xcb_get_property_reply(
        connection,
        xcb_get_property(connection, 0, window, atoms.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 0, maximumStates),
        nullptr));
    if (present && present->format == 32) {
        const auto *const values = static_cast<const quint32 *>(xcb_get_property_value(present.get()));
        states.assign(values, values + present->value_len);
    }
    for (const std::string_view name :
         {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}) {
        if (const xcb_atom_t state = atoms.atom(name); std::ranges::find(states, state) == states.end()) {
            states.push_back(state);
        }
    }
    return states;
}

void writeProperties(X11Connection &atoms, QWindow &window)
{
    xcb_connection_t *const connection = qtConnection();
    if (connection == nullptr || !atoms.isValid()) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    setProperty(connection, id, atoms.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
                {atoms.atom("_NET_WM_WINDOW_TYPE_UTILITY")});
    setProperty(connection, id, atoms.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, withPanelStates(atoms, connection, id));
    // Both this and the sticky state: one window manager follows the one, another the other.
    setProperty(connection, id, atoms.atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, {everyDesktop});
    // Time 0 asks the window manager not to give the window the focus when it appears. Where window managers look for
    // it on a window of its own, Qt does the same for windows that show without activating.
    setProperty(connection, id, atoms.atom("_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, {0});
    xcb_flush(connection);
}

void askWindowManager(xcb_connection_t *connection, xcb_window_t root, xcb_window_t window, xcb_atom_t type,
                      const std::array<quint32, 4> &data)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::ranges::copy(data, std::begin(message.data.data32));
    xcb_send_event(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
}

/// Some window managers keep nothing above the full-screen window that has the focus but windows of its own.
void stayAboveFullScreen(X11Connection &atoms, xcb_connection_t *connection, xcb_window_t panel)
{
    const auto active = atoms.property(atoms.root(), "_NET_ACTIVE_WINDOW");
    if (active.empty() || active.front() == XCB_WINDOW_NONE || active.front() == panel) {
        return;
    }
    const auto states = atoms.property(active.front(), "_NET_WM_STATE", maximumStates);
    if (std::ranges::find(states, atoms.atom("_NET_WM_STATE_FULLSCREEN")) != states.end()) {
        setProperty(connection, panel, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, {active.front()});
    }
}

/// Asks for the same once the window is there: a window manager that was still busy with an earlier hiding has wiped
/// what writeProperties() wrote for this showing.
void repeatStates(X11Connection &atoms, QWindow &window)
{
    constexpr quint32 add = 1;
    constexpr quint32 fromApplication = 1;
    xcb_connection_t *const connection = qtConnection();
    if (connection == nullptr || !atoms.isValid()) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    const xcb_atom_t state = atoms.atom("_NET_WM_STATE");
    askWindowManager(connection, atoms.root(), id, state,
                     {add, atoms.atom("_NET_WM_STATE_ABOVE"), atoms.atom("_NET_WM_STATE_STICKY"), fromApplication});
    askWindowManager(
        connection, atoms.root(), id, state,
        {add, atoms.atom("_NET_WM_STATE_SKIP_TASKBAR"), atoms.atom("_NET_WM_STATE_SKIP_PAGER"), fromApplication});
    askWindowManager(connection, atoms.root(), id, atoms.atom("_NET_WM_DESKTOP"),
                     {everyDesktop, fromApplication, 0, 0});
    stayAboveFullScreen(atoms, connection, id); // Qt names its own window there at every showing
    xcb_flush(connection);
}

QRect rootGeometry(X11Connection &connection)
{
    const auto root =
        connection.isValid()
            ? connection.reply(xcb_get_geometry_reply, xcb_get_geometry(connection.connection(), connection.root()))
            : nullptr;
    return root ? QRect(0, 0, root->width, root->height) : QRect();
}

} // namespace

X11PanelWindow::X11PanelWindow(X11Connection &connection) : m_connection(connection) {}

void X11PanelWindow::makePanel(QWindow &window)
{
    // Qt's X11 plugin writes a user time of its own at every showing unless the window says that it comes without
    // focus.
    window.setProperty("_q_showWithoutActivating", true);
    window.removeEventFilter(this);
    window.installEventFilter(this);
    writeProperties(m_connection, window);
}

bool X11PanelWindow::eventFilter(QObject *watched, QEvent *event)
{
    auto *const window = qobject_cast<QWindow *>(watched);
    if (window != nullptr && event->type() == QEvent::Show) { // sent before the native window is mapped
        m_appearing = window;
        m_silence.begin(static_cast<xcb_window_t>(window->winId()));
        writeProperties(m_connection, *window);
    } else if (window != nullptr && event->type() == QEvent::Hide) {
        m_silence.end();
    } else if (window != nullptr && event->type() == QEvent::Expose && m_appearing == window && window->isExposed()) {
        m_appearing = nullptr;
        m_silence.end();
        // Behind the first painting, which this event leads to.
        QMetaObject::invokeMethod(
            window, [this, window] { repeatStates(m_connection, *window); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

bool X11PanelWindow::orderFront(QWindow &window)
{
    xcb_connection_t *const connection = qtConnection();
    if (connection == nullptr || !m_connection.isValid()) {
        return false;
    }
    // Some window managers take a plain request to be raised for one to be activated. What a pager asks for is done as
    // it says.
    constexpr quint32 fromPager = 2;
    const auto id = static_cast<xcb_window_t>(window.winId());
    askWindowManager(connection, m_connection.root(), id, m_connection.atom("_NET_RESTACK_WINDOW"),
                     {fromPager, XCB_WINDOW_NONE, XCB_STACK_MODE_ABOVE, 0});
    stayAboveFullScreen(m_connection, connection, id);
    xcb_flush(connection);
    return true;
}

bool X11PanelWindow::startMove(QWindow &window, QPoint pressed)
{
    xcb_connection_t *const connection = qtConnection();
    const QScreen *const screen = window.screen();
    if (connection == nullptr || screen == nullptr || !m_connection.isValid()) {
        return false;
    }
    constexpr quint32 mostAtoms = 1024;
    const xcb_atom_t moveResize = m_connection.atom("_NET_WM_MOVERESIZE");
    const auto supported = m_connection.property(m_connection.root(), "_NET_SUPPORTED", mostAtoms);
    if (std::ranges::find(supported, moveResize) == supported.end()) {
        return false;
    }
    // Qt would name the place where the pointer is by now, and the window would trail behind it by that much.
    constexpr quint32 moveByPointer = 8;
    const QPoint origin = screen->geometry().topLeft();
    const QPoint native = origin + (QPointF(pressed - origin) * screen->devicePixelRatio()).toPoint();
    xcb_ungrab_pointer(connection, XCB_CURRENT_TIME); // Qt's, which the window manager's could not follow
    askWindowManager(
        connection, m_connection.root(), static_cast<xcb_window_t>(window.winId()), moveResize,
        {static_cast<quint32>(native.x()), static_cast<quint32>(native.y()), moveByPointer, XCB_BUTTON_INDEX_1});
    xcb_flush(connection);
    // The window manager gets the real one, and Qt would wait for it.
    const QPointF local = window.mapFromGlobal(QPointF(pressed));
    QMouseEvent release(QEvent::MouseButtonRelease, local, local, QPointF(pressed), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &release);
    return true;
}

QRect X11PanelWindow::visibleFrame(const QScreen &screen, QRect available) const
{
    // With one monitor the window manager's work area is right, and Qt knows it.
    if (QGuiApplication::screens().size() < 2 || qtConnection() == nullptr) {
        return available;
    }
    // Qt scales a screen's size and leaves its place as it is.
    const qreal scale = screen.devicePixelRatio();
    const QPoint origin = screen.geometry().topLeft();
    const QRect monitor(origin, (QSizeF(screen.geometry().size()) * scale).toSize());
    const QRect rest = X11Struts::freePart(monitor, rootGeometry(m_connection), X11Struts::read(m_connection));
    const QPoint offset = (QPointF(rest.topLeft() - origin) / scale).toPoint();
    return {origin + offset, (QSizeF(rest.size()) / scale).toSize()};
}

QCoro::Task<std::optional<QPoint>> X11PanelWindow::pointer()
{
    const std::optional<QPoint> native = co_await m_pointer.position();
    if (!native) {
        co_return std::nullopt;
    }
    for (const QScreen *screen : QGuiApplication::screens()) {
        // Qt scales a screen's size and leaves its place as it is.
        const qreal scale = screen->devicePixelRatio();
        const QPoint origin = screen->geometry().topLeft();
        if (QRect(origin, (QSizeF(screen->geometry().size()) * scale).toSize()).contains(*native)) {
            co_return origin + (QPointF(*native - origin) / scale).toPoint();
        }
    }
    co_return native;
}

void X11PanelWindow::announce(QObject &window, const QString &text)
{
    ATSPIAnnouncement::send(window, text);
}

bool X11PanelWindow::reducesMotion() const
{
    if (!m_connection.isValid()) {
        return false;
    }
    constexpr quint32 mostWords = 64 * 1024;
    const std::string selection = "_XSETTINGS_S" + std::to_string(m_connection.screenNumber());
    xcb_connection_t *const connection = m_connection.connection();
    const auto owner = m_connection.reply(xcb_get_selection_owner_reply,
                                          xcb_get_selection_owner(connection, m_connection.atom(selection)));
    if (!owner || owner->owner == XCB_WINDOW_NONE) {
        return false;
    }
    const auto settings = m_connection.reply(
        xcb_get_property_reply, xcb_get_property(connection, 0, owner->owner, m_connection.atom("_XSETTINGS_SETTINGS"),
                                                 XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords));
    return settings && settings->format == 8 &&
           XSettings::integer(QByteArray(static_cast<const char *>(xcb_get_property_value(settings.get())),
                                         xcb_get_property_value_length(settings.get())),
                              "Gtk/EnableAnimations") == 0;
}

bool X11PanelWindow::isCompositing() const
{
    if (!m_connection.isValid()) {
        return false;
    }
    const std::string selection = "_NET_WM_CM_S" + std::to_string(m_connection.screenNumber());
    const xcb_atom_t manager = m_connection.atom(selection);
    const auto owner =
        m_connection.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(m_connection.connection(), manager));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace orvesa
