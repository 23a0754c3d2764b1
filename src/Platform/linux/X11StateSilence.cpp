#include "Platform/linux/X11StateSilence.h"

#include "Platform/linux/X11Event.h"

#include <QCoreApplication>

namespace orvesa {

X11StateSilence::X11StateSilence(X11Connection &connection) : m_connection(connection) {}

X11StateSilence::~X11StateSilence()
{
    end();
}

void X11StateSilence::begin(xcb_window_t window)
{
    if (!m_connection.isValid() || QCoreApplication::instance() == nullptr) {
        return;
    }
    if (m_window == XCB_WINDOW_NONE) {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }
    m_window = window;
    m_netState = m_connection.atom("_NET_WM_STATE");
    m_state = m_connection.atom("WM_STATE");
}

void X11StateSilence::end()
{
    if (m_window == XCB_WINDOW_NONE) {
        return;
    }
    m_window = XCB_WINDOW_NONE;
    if (QCoreApplication::instance() != nullptr) {
        QCoreApplication::instance()->removeNativeEventFilter(this);
    }
}

bool X11StateSilence::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto &event = *static_cast<const xcb_generic_event_t *>(message);
    if (eventTypeOf(event) != XCB_PROPERTY_NOTIFY) {
        return false;
    }
    const auto &news = reinterpret_cast<const xcb_property_notify_event_t &>(event);
    return news.window == m_window && (news.atom == m_netState || news.atom == m_state);
}

} // namespace orvesa
