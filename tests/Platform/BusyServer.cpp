#include "Platform/BusyServer.h"

#include "Platform/linux/X11Reply.h"

#include <algorithm>
#include <vector>

namespace orvesa::tests {

BusyServer::BusyServer() : m_connection(xcb_connect(nullptr, nullptr))
{
    xcb_grab_server(m_connection);
    // Its answer shows that the server has seen the grab.
    const X11Reply<xcb_get_input_focus_reply_t> answer(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

BusyServer::~BusyServer()
{
    xcb_disconnect(m_connection); // and with it the grab ends
}

void BusyServer::letGo()
{
    xcb_ungrab_server(m_connection);
    xcb_flush(m_connection);
}

bool moveAlt(xcb_connection_t *connection)
{
    const X11Reply<xcb_get_modifier_mapping_reply_t> map(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
    if (!map) {
        return false;
    }
    const auto width = map->keycodes_per_modifier;
    const auto *const keys = xcb_get_modifier_mapping_keycodes(map.get());
    std::vector<xcb_keycode_t> changed(keys, keys + 8 * std::ptrdiff_t{width});
    constexpr std::ptrdiff_t first = 3; // after Shift, Lock and Control
    constexpr std::ptrdiff_t third = 5;
    std::swap_ranges(changed.begin() + first * width, changed.begin() + (first + 1) * width,
                     changed.begin() + third * width);
    const X11Reply<xcb_set_modifier_mapping_reply_t> answer(xcb_set_modifier_mapping_reply(
        connection, xcb_set_modifier_mapping(connection, width, changed.data()), nullptr));
    return answer && answer->status == XCB_MAPPING_STATUS_SUCCESS;
}

} // namespace orvesa::tests
