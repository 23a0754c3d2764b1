#include "desktop/Pointer.h"

#include "desktop/XSession.h"

#include <xcb/xtest.h>

namespace orvesa::desktop {

Pointer::Pointer(XSession &session) : m_session(session) {}

void Pointer::moveTo(QPoint place)
{
    xcb_test_fake_input(m_session.connection(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_session.root(),
                        static_cast<qint16>(place.x()), static_cast<qint16>(place.y()), 0);
    m_session.synchronize();
}

QPoint Pointer::position() const
{
    const XReply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
        m_session.connection(), xcb_query_pointer(m_session.connection(), m_session.root()), nullptr));
    return reply ? QPoint(reply->root_x, reply->root_y) : QPoint();
}

void Pointer::press(MouseButton button)
{
    xcb_test_fake_input(m_session.connection(), XCB_BUTTON_PRESS, static_cast<quint8>(button), XCB_CURRENT_TIME,
                        XCB_NONE, 0, 0, 0);
    m_session.synchronize();
}

void Pointer::release(MouseButton button)
{
    xcb_test_fake_input(m_session.connection(), XCB_BUTTON_RELEASE, static_cast<quint8>(button), XCB_CURRENT_TIME,
                        XCB_NONE, 0, 0, 0);
    m_session.synchronize();
}

void Pointer::click(MouseButton button)
{
    press(button);
    release(button);
}

void Pointer::clickAt(QPoint place, MouseButton button)
{
    moveTo(place);
    click(button);
}

void Pointer::drag(QPoint from, QPoint to, MouseButton button)
{
    constexpr int steps = 8;
    moveTo(from);
    press(button);
    for (int step = 1; step <= steps; ++step)
        moveTo(from + (to - from) * step / steps);
    release(button);
}

} // namespace orvesa::desktop
