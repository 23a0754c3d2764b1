#pragma once

// Another program that has the X server to itself, as some have for moments: until it lets go, nobody else's requests
// are answered.
//
// Main thread. On the display of the environment. Whoever connects to that display meanwhile waits for it.

#include <QtGlobal>

#include <chrono>
#include <thread>

#include <xcb/xcb.h>

namespace orvesa::tests {

class BusyServer final {
public:
    /// Holds it from now on.
    BusyServer();
    /// Lets go of it by itself after that time, also when this process waits for the server.
    explicit BusyServer(std::chrono::milliseconds duration);
    ~BusyServer();
    Q_DISABLE_COPY_MOVE(BusyServer)

    void letGo();
    /// The only one that is served meanwhile.
    [[nodiscard]] xcb_connection_t *connection() { return m_connection; }

private:
    xcb_connection_t *m_connection;
    std::thread m_thread;
};

/// Exchanges the keys of the first modifier, which Alt is one of, for those of the third, which has none, and says
/// whether that worked.
[[nodiscard]] bool moveAlt(xcb_connection_t *connection);

} // namespace orvesa::tests
