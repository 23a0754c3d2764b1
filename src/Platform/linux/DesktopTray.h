#pragma once

// The desktop's tray, of either kind: one that takes StatusNotifierItems over the session bus or one that embeds X
// windows.
//
// Qt decides which kind it uses when the first status item is made, and never again: one made before there is any tray
// would wait for an embedding one for ever. So it is made only when a tray is there, and this object waits for that.
// Main thread; the connection must outlive it. Calls to the bus wait 250 ms at most.

#include "Platform/TrayPort.h"
#include "Platform/linux/X11Connection.h"

#include <QObject>

namespace orvesa {

class DesktopTray final : public QObject, public TrayPort {
    Q_OBJECT

public:
    explicit DesktopTray(X11Connection &connection);
    ~DesktopTray() override;

    [[nodiscard]] bool isAvailable() override;
    void whenAvailable(std::function<void()> handler) override;

private Q_SLOTS:
    void look();
    void announce();

private:
    [[nodiscard]] bool takesNotifierItems() const;
    [[nodiscard]] bool embedsWindows();
    void watch();
    void stopWatching();
    void handle(const xcb_generic_event_t &event);

    X11Connection &m_connection;
    X11Connection::HandlerToken m_token = 0;
    std::function<void()> m_handler;
};

} // namespace orvesa
