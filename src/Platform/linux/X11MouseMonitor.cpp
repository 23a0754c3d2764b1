#include "Platform/linux/X11MouseMonitor.h"

#include "Platform/linux/WaylandSession.h"
#include "Platform/linux/X11Event.h"

#include <utility>

#include <xcb/xinput.h>

namespace orvesa {

namespace {

constexpr quint32 firstWheelButton = 4;
constexpr quint32 lastWheelButton = 7;

} // namespace

X11MouseMonitor::X11MouseMonitor(X11Connection &connection) : m_connection(connection) {}

X11MouseMonitor::~X11MouseMonitor()
{
    setMouseDownHandler({});
    m_connection.removeEventHandler(m_token);
}

bool X11MouseMonitor::prepare()
{
    if (!m_connection.isValid()) {
        return false;
    }
    if (m_extensionOpcode != 0) {
        return true;
    }
    xcb_connection_t *const raw = m_connection.connection();
    const xcb_query_extension_reply_t *const extension = m_connection.extension(xcb_input_id);
    if (extension == nullptr) {
        return false;
    }
    // From version 2.1 on raw events come even while another program holds the pointer, as menus do.
    if (!m_connection.reply(xcb_input_xi_query_version_reply, xcb_input_xi_query_version(raw, 2, 2))) {
        return false;
    }
    m_extensionOpcode = extension->major_opcode;
    m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) { handle(event); });
    return true;
}

void X11MouseMonitor::setMouseDownHandler(Handler handler)
{
    const bool wasSet = static_cast<bool>(m_handler);
    m_handler = std::move(handler);
    const bool isSet = static_cast<bool>(m_handler);
    if (isSet != wasSet && (isSet || m_extensionOpcode != 0) && prepare()) {
        select(isSet);
    }
}

bool X11MouseMonitor::seesEveryPress() const
{
    return !WaylandSession::isRunning();
}

void X11MouseMonitor::select(bool wanted)
{
    struct {
        xcb_input_event_mask_t head;
        quint32 mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, wanted ? quint32{XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS} : 0};
    xcb_input_xi_select_events(m_connection.connection(), m_connection.root(), 1, &selection.head);
    m_connection.settle();
}

void X11MouseMonitor::handle(const xcb_generic_event_t &event)
{
    if (eventTypeOf(event) != XCB_GE_GENERIC || !m_handler) {
        return;
    }
    const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
    if (generic.extension != m_extensionOpcode || generic.event_type != XCB_INPUT_RAW_BUTTON_PRESS) {
        return;
    }
    const auto &press = reinterpret_cast<const xcb_input_raw_button_press_event_t &>(event);
    if (press.detail >= firstWheelButton && press.detail <= lastWheelButton) {
        return;
    }
    if (const auto position = pointerPosition()) {
        const Handler handler = m_handler; // it may end the monitoring
        handler(*position);
    }
}

std::optional<QPoint> X11MouseMonitor::pointerPosition()
{
    const auto pointer =
        m_connection.reply(xcb_query_pointer_reply, xcb_query_pointer(m_connection.connection(), m_connection.root()));
    if (!pointer) {
        return std::nullopt;
    }
    return QPoint(pointer->root_x, pointer->root_y);
}

} // namespace orvesa
