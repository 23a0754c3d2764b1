#include "Platform/linux/WaylandPointer.h"

#include "Platform/linux/WaylandSession.h"
#include "Platform/linux/X11Event.h"

#include <QCoroSignal>

#include <QPointer>

#include <array>
#include <utility>

namespace orvesa {

namespace {

constexpr quint8 blendedDepth = 32;

struct RootSize {
    quint16 width = 0;
    quint16 height = 0;
};

RootSize rootSize(X11Connection &connection)
{
    const auto geometry =
        connection.reply(xcb_get_geometry_reply, xcb_get_geometry(connection.connection(), connection.root()));
    return geometry ? RootSize{geometry->width, geometry->height} : RootSize{};
}

/// A visual with transparency on the connection's screen.
xcb_visualid_t blendedVisual(X11Connection &connection)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.connection()));
    for (; screens.rem > 0; xcb_screen_next(&screens)) {
        auto depths = xcb_screen_allowed_depths_iterator(screens.data);
        for (; screens.data->root == connection.root() && depths.rem > 0; xcb_depth_next(&depths)) {
            const auto visuals = xcb_depth_visuals_iterator(depths.data);
            if (depths.data->depth == blendedDepth && visuals.rem > 0) {
                return visuals.data->visual_id;
            }
        }
    }
    return 0;
}

} // namespace

WaylandPointer::WaylandPointer(X11Connection &connection)
    : m_connection(connection), m_question(std::make_shared<PointerQuestion>(bound))
{
    connect(m_question.get(), &PointerQuestion::answered, this, &WaylandPointer::removeWindow);
}

WaylandPointer::~WaylandPointer()
{
    m_question->answer(std::nullopt);
    m_connection.removeEventHandler(m_token);
}

QCoro::Task<std::optional<QPoint>> WaylandPointer::position()
{
    if (!WaylandSession::isRunning() || !m_connection.isValid()) {
        co_return std::nullopt;
    }
    if (!KWinPointer::isOffered()) {
        const std::optional<QPoint> entered = co_await positionByWindow();
        co_return entered;
    }
    const QPointer<WaylandPointer> self(this);
    const std::optional<QPointF> place = co_await m_kwin.place();
    if (!self || !place) {
        co_return std::nullopt;
    }
    const RootSize size = rootSize(m_connection);
    co_return QPointF(place->x() * size.width, place->y() * size.height).toPoint();
}

QCoro::Task<std::optional<QPoint>> WaylandPointer::positionByWindow()
{
    // One who asks while a question is under way gets its answer, behind those who have asked before.
    if (!m_question->isAsked()) {
        m_window = showWindow();
        if (m_window == XCB_WINDOW_NONE) {
            co_return std::nullopt;
        }
        m_question->ask();
    }
    const std::shared_ptr<PointerQuestion> question = m_question;
    const std::optional<QPointF> place = co_await qCoro(question.get(), &PointerQuestion::answered);
    if (!place) {
        co_return std::nullopt;
    }
    co_return place->toPoint();
}

xcb_window_t WaylandPointer::showWindow()
{
    const RootSize size = rootSize(m_connection);
    const xcb_atom_t typeName = m_connection.atom("_NET_WM_WINDOW_TYPE");
    const xcb_atom_t type = m_connection.atom("_NET_WM_WINDOW_TYPE_TOOLTIP");
    xcb_connection_t *const raw = m_connection.connection(); // after the round trips: any of them may be the last
    const xcb_visualid_t visual = raw == nullptr ? 0 : blendedVisual(m_connection);
    if (visual == 0 || size.width < 2 || size.height < 2) {
        return XCB_WINDOW_NONE;
    }
    if (m_token == 0) {
        m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) { handle(event); });
    }
    const xcb_colormap_t colours = xcb_generate_id(raw);
    xcb_create_colormap(raw, XCB_COLORMAP_ALLOC_NONE, colours, m_connection.root(), visual);
    const xcb_window_t window = xcb_generate_id(raw);
    constexpr quint32 nothing = 0;
    constexpr quint32 leftAlone = 1;
    // One pixel smaller than the screen: a window of its size, or of a monitor's, is taken for a full-screen one, for
    // which GNOME hides its top bar.
    const auto width = static_cast<quint16>(size.width - 1);
    const auto height = static_cast<quint16>(size.height - 1);
    const std::array<quint32, 5> values{nothing, nothing, leftAlone, XCB_EVENT_MASK_POINTER_MOTION, colours};
    xcb_create_window(
        raw, blendedDepth, window, m_connection.root(), 0, 0, width, height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
        values.data());
    xcb_free_colormap(raw, colours); // the window keeps it
    xcb_change_property(raw, XCB_PROP_MODE_REPLACE, window, typeName, XCB_ATOM_ATOM, 32, 1, &type);
    xcb_map_window(raw, window);
    m_connection.settle();
    return window;
}

void WaylandPointer::removeWindow()
{
    const xcb_window_t window = std::exchange(m_window, xcb_window_t{XCB_WINDOW_NONE});
    if (window != XCB_WINDOW_NONE && m_connection.isValid()) {
        xcb_destroy_window(m_connection.connection(), window);
        m_connection.settle();
    }
}

void WaylandPointer::handle(const xcb_generic_event_t &event)
{
    // What the server says by itself when the window comes up is what it had last heard; only a move is news.
    if (eventTypeOf(event) != XCB_MOTION_NOTIFY || m_window == XCB_WINDOW_NONE) {
        return;
    }
    const auto &motion = reinterpret_cast<const xcb_motion_notify_event_t &>(event);
    if (motion.event == m_window) {
        m_question->answer(QPointF(motion.root_x, motion.root_y));
    }
}

} // namespace orvesa
