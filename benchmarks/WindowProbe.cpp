#include "WindowProbe.h"

#include "desktop/Waiting.h"
#include "service/ServiceRequest.h"

#include <xcb/damage.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

namespace orvesa::benchmark {

namespace {

struct Free {
    void operator()(void *pointer) const { std::free(pointer); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

constexpr double paintedShare = 0.25;
constexpr quint8 eventTypeMask = 0x7F; // the highest bit tells events that a client sent

xcb_screen_t *screenOf(xcb_connection_t *connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

} // namespace

WindowProbe::WindowProbe(const QString &display) : m_connection(xcb_connect(display.toLocal8Bit().constData(), nullptr))
{
    xcb_connection_t *const connection = m_connection.get();
    if (xcb_connection_has_error(connection) != 0) {
        throw std::runtime_error("cannot open the display " + display.toStdString());
    }
    const xcb_query_extension_reply_t *damage = xcb_get_extension_data(connection, &xcb_damage_id);
    if (damage == nullptr || damage->present == 0) {
        throw std::runtime_error("the display has no DAMAGE extension");
    }
    m_firstDamageEvent = damage->first_event;
    const Owned<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
        connection, xcb_damage_query_version(connection, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION), nullptr));

    m_root = screenOf(connection)->root;
    m_farewell = xcb_generate_id(connection);
    xcb_create_window(connection, 0, m_farewell, m_root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    const quint32 mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection, m_root, XCB_CW_EVENT_MASK, &mask);
    watchTree(m_root);
    xcb_flush(connection);
    m_thread = std::thread([this] { run(); });
}

WindowProbe::~WindowProbe()
{
    xcb_client_message_event_t farewell{};
    farewell.response_type = XCB_CLIENT_MESSAGE;
    farewell.format = 32;
    farewell.window = m_farewell;
    // An event that names no mask goes to the client that made the window: this one.
    xcb_send_event(m_connection.get(), 0, m_farewell, 0, reinterpret_cast<const char *>(&farewell));
    xcb_flush(m_connection.get());
    m_thread.join();
}

void WindowProbe::clear()
{
    const std::scoped_lock lock(m_mutex);
    m_times.clear();
}

void WindowProbe::awaitPaintingAnew(xcb_window_t window)
{
    const std::scoped_lock lock(m_mutex);
    m_times[window].painted.reset();
}

std::optional<qint64> WindowProbe::awaitPainted(xcb_window_t window, std::chrono::milliseconds deadline) const
{
    std::unique_lock lock(m_mutex);
    const auto painted = [&] {
        const auto found = m_times.find(window);
        return found == m_times.end() ? std::nullopt : found->second.painted;
    };
    m_changed.wait_for(lock, deadline, [&] { return painted().has_value(); });
    return painted();
}

WindowTimes WindowProbe::times(xcb_window_t window) const
{
    const std::scoped_lock lock(m_mutex);
    const auto found = m_times.find(window);
    return found == m_times.end() ? WindowTimes() : found->second;
}

xcb_window_t WindowProbe::awaitPaintedWindow(desktop::Windows &windows, qint64 process) const
{
    using namespace Qt::StringLiterals;
    xcb_window_t painted = 0;
    desktop::waitUntil(
        [&] {
            for (const xcb_window_t window : windows.mapped({.pid = process})) {
                if (times(window).painted) {
                    painted = window;
                }
            }
            return painted != 0;
        },
        u"the window to be mapped and painted"_s);
    return painted;
}

void WindowProbe::run()
{
    while (const Owned<xcb_generic_event_t> event{xcb_wait_for_event(m_connection.get())}) {
        const qint64 now = service::monotonicNanoseconds();
        // Requests to the window manager pass by here too.
        if ((event->response_type & eventTypeMask) == XCB_CLIENT_MESSAGE &&
            reinterpret_cast<const xcb_client_message_event_t &>(*event).window == m_farewell) {
            return;
        }
        handle(*event, now);
    }
}

void WindowProbe::handle(const xcb_generic_event_t &event, qint64 now)
{
    const auto type = static_cast<quint8>(event.response_type & eventTypeMask);
    if (type == XCB_CREATE_NOTIFY) {
        watch(reinterpret_cast<const xcb_create_notify_event_t &>(event).window);
        xcb_flush(m_connection.get());
    } else if (type == XCB_MAP_NOTIFY) {
        const std::scoped_lock lock(m_mutex);
        WindowTimes &times = m_times[reinterpret_cast<const xcb_map_notify_event_t &>(event).window];
        times.mapped = times.mapped.value_or(now);
    } else if (type == m_firstDamageEvent + XCB_DAMAGE_NOTIFY) {
        const auto &damage = reinterpret_cast<const xcb_damage_notify_event_t &>(event);
        const double whole = double(damage.geometry.width) * damage.geometry.height;
        notePainted(damage.drawable, double(damage.area.width) * damage.area.height / whole, now);
    }
}

void WindowProbe::watchTree(xcb_window_t window)
{
    xcb_connection_t *const connection = m_connection.get();
    const Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
    if (!tree) {
        return;
    }
    const xcb_window_t *const children = xcb_query_tree_children(tree.get());
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
        watch(children[index]);
        watchTree(children[index]);
    }
}

void WindowProbe::watch(xcb_window_t window)
{
    // A window that is gone again, or draws nothing, gives errors that the event loop passes over.
    const quint32 mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection.get(), window, XCB_CW_EVENT_MASK, &mask);
    xcb_damage_create(m_connection.get(), xcb_generate_id(m_connection.get()), window,
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
}

void WindowProbe::notePainted(xcb_window_t window, double share, qint64 now)
{
    const std::scoped_lock lock(m_mutex);
    WindowTimes &times = m_times[window];
    if (times.mapped && share >= paintedShare) {
        times.painted = times.painted.value_or(now);
        m_changed.notify_all();
    }
}

} // namespace orvesa::benchmark
