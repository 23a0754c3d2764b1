#pragma once

// Key combinations held on the root window, and their presses.
//
// While a grabbed key is pressed the X server keeps back all further keys until this program lets go. It does so at
// once, in a thread of its own that is busy with nothing else, so that a press costs other programs three
// milliseconds at most even while this one works. Before it lets go it sends the application in front a tap of a key
// without meaning: that one has seen a modifier go down and will see it come up, and toolkits take a modifier with
// nothing in between for "open the menu bar". Keys that follow are kept back until then, so that the tap is in time
// however fast they come. Nothing but grabbed combinations reaches this object; only while one is down are releases of
// keys noticed too.
//
// Made and used on the main thread, where the press handler is called from the event loop. It has a connection of its
// own, opened by the first grab. When the server goes away every operation does nothing.

#include <QObject>

#include <atomic>
#include <functional>
#include <set>
#include <span>
#include <thread>

#include <xcb/xcb.h>

namespace orvesa {

class X11KeyGrabs final {
public:
    enum class Outcome { granted, taken, refused, noServer };
    /// Called once per press, however long the key is held.
    using PressHandler = std::function<void(xcb_keycode_t keyCode, quint16 state)>;

    explicit X11KeyGrabs(PressHandler handler);
    ~X11KeyGrabs();
    Q_DISABLE_COPY_MOVE(X11KeyGrabs)

    /// Grabs the key with each of the modifier masks, or with none of them.
    [[nodiscard]] Outcome grab(xcb_keycode_t keyCode, std::span<const quint16> masks);
    void ungrab(xcb_keycode_t keyCode, std::span<const quint16> masks);

    /// The modifier bit that must not look as if tapped alone, and the key that is tapped meanwhile. 0 for none.
    void setLoneModifier(quint16 modifier, xcb_keycode_t tappedKey);

private:
    bool open();
    void readEvents();
    void press(const xcb_key_press_event_t &event);
    void release(xcb_keycode_t keyCode);
    [[nodiscard]] bool isDown(xcb_keycode_t keyCode) const;
    /// Whether releases of keys are told of.
    enum class Listening { off, on };
    void listenForReleases(Listening listening) const;
    /// Whom the tap went to.
    enum class Tapped { nothing, windowOfQt, otherWindow };
    Tapped tapInFront(const xcb_key_press_event_t &event);
    [[nodiscard]] bool isOfQt(xcb_window_t window) const;
    void stop();

    PressHandler m_handler;
    xcb_connection_t *m_connection = nullptr;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    xcb_window_t m_wakeWindow = XCB_WINDOW_NONE; ///< gets the message that ends the thread
    bool m_opened = false;
    quint8 m_inputOpcode = 0; ///< of the input extension's events
    xcb_atom_t m_embeddingInfo = XCB_ATOM_NONE;
    std::set<xcb_keycode_t> m_heldKeys;     ///< the thread's own
    std::atomic<quint32> m_loneModifier{0}; ///< the modifier's bit, and the tapped key above it
    QObject m_receiver;                     ///< of the thread's calls; they end with it
    std::thread m_thread;
};

} // namespace orvesa
