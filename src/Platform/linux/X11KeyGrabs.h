#pragma once

// Key combinations held on the root window, and their presses.
//
// While a grabbed key is pressed the X server keeps back all further keys until this program lets go. It does so at
// once, in a thread of its own that is busy with nothing else, so that a press costs other programs a fraction of a
// millisecond even while this one works, and no key is ever out of order: the application in front gets the release of
// the shortcut's key before that of its modifier, always, and so never takes the modifier for one that was tapped
// alone, which toolkits understand as "open the menu bar". Nothing but grabbed combinations reaches this object.
//
// Made and used on the main thread, where the press handler is called from the event loop. It has a connection of its
// own, opened by the first grab. When the server goes away every operation does nothing.

#include <QObject>

#include <atomic>
#include <functional>
#include <span>
#include <thread>

#include <xcb/xcb.h>

namespace orvesa {

class X11KeyGrabs final {
public:
    enum class Outcome { granted, taken, refused, noServer };
    using PressHandler = std::function<void(xcb_keycode_t keyCode, quint16 state)>;

    explicit X11KeyGrabs(PressHandler handler);
    ~X11KeyGrabs();
    Q_DISABLE_COPY_MOVE(X11KeyGrabs)

    /// Grabs the key with each of the modifier masks, or with none of them.
    [[nodiscard]] Outcome grab(xcb_keycode_t keyCode, std::span<const quint16> masks);
    void ungrab(xcb_keycode_t keyCode, std::span<const quint16> masks);

    /// Which modifier bit an application in front might take for tapped alone, and the key that is tapped meanwhile so
    /// that even those do not which look at presses only. 0 for either: no such tap.
    void setLoneModifier(quint16 modifier, xcb_keycode_t tappedKey);

private:
    bool open();
    void readEvents();
    void letGo(const xcb_key_press_event_t &event);
    void stop();

    PressHandler m_handler;
    xcb_connection_t *m_connection = nullptr;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    xcb_window_t m_wakeWindow = XCB_WINDOW_NONE; ///< gets the message that ends the thread
    bool m_opened = false;
    std::atomic<quint32> m_loneModifier{0}; ///< the modifier's bit, and the tapped key above it
    QObject m_receiver;                     ///< of the thread's calls; they end with it
    std::thread m_thread;
};

} // namespace orvesa
