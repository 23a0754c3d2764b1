#pragma once

// What an X11 event is and holds. Pure functions; any thread.

#include <QtGlobal>

#include <xcb/xcb.h>

namespace orvesa {

/// The event's type, whoever sent it: the eighth bit says that another client did.
[[nodiscard]] constexpr quint8 eventTypeOf(const xcb_generic_event_t &event)
{
    return static_cast<quint8>(event.response_type & 0x7f);
}

/// The keyboard's group in the modifier state that core events and the pointer's place come with.
[[nodiscard]] constexpr unsigned groupIn(quint16 state)
{
    return (state >> 13U) & 3U;
}

} // namespace orvesa
