#pragma once

// Another program that has the X server to itself, as some have for moments: until it lets go, nobody else's requests
// are answered.
//
// Main thread. On the display of the environment. Whoever connects to that display meanwhile waits for it.

#include <QtGlobal>

#include <xcb/xcb.h>

namespace orvesa::tests {

class BusyServer final {
public:
    /// Holds it from now on.
    BusyServer();
    ~BusyServer();
    Q_DISABLE_COPY_MOVE(BusyServer)

    void letGo();
    /// The only one that is served meanwhile.
    [[nodiscard]] xcb_connection_t *connection() { return m_connection; }

private:
    xcb_connection_t *m_connection;
};

/// Exchanges the keys of the first modifier, which Alt is one of, for those of the third, which has none, and says
/// whether that worked.
[[nodiscard]] bool moveAlt(xcb_connection_t *connection);

} // namespace orvesa::tests
