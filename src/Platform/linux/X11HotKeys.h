#pragma once

// System-wide hot keys as passive key grabs on the root window.
//
// Main thread. Each hot key is grabbed for every state of the lock modifiers. Only the grabbed combinations ever reach
// this program. When the keyboard's modifiers change, every hot key is grabbed anew under the new ones; a key is held
// by its place, which no layout changes. While the server does not answer, what is known of the keyboard and the grabs
// stay as they are; a hot key that is registered before it has answered at all counts as registered, and is grabbed
// when it does.

#include "Platform/HotKeyPort.h"
#include "Platform/linux/X11Connection.h"
#include "Platform/linux/X11KeyGrabs.h"
#include "Platform/linux/X11Modifiers.h"

#include <map>
#include <memory>
#include <optional>

namespace orvesa {

class X11HotKeys final : public HotKeyPort {
public:
    /// The connection must outlive this object. It serves for everything but the grabs.
    explicit X11HotKeys(X11Connection &connection);
    ~X11HotKeys() override;

    [[nodiscard]] qint32 installHandler(Handler handler) override;
    void removeHandler() override;
    [[nodiscard]] HotKeyRegistration registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id) override;
    qint32 unregisterHotKey(HotKeyRef reference) override;

private:
    struct HotKey {
        quint32 macKeyCode = 0;
        quint32 carbonModifiers = 0;
        HotKeyID id;
        xcb_keycode_t keyCode = 0;
        quint16 modifiers = 0;
        bool isGrabbed = false;
    };

    bool prepare();
    /// Asks to be told when the keyboard changes. False while the server does not answer.
    [[nodiscard]] bool followKeyboard();
    void useModifiers(const X11Modifiers &modifiers);
    void handle(const xcb_generic_event_t &event);
    void press(xcb_keycode_t keyCode, quint16 state);
    [[nodiscard]] qint32 grab(HotKey &hotKey);
    void ungrab(HotKey &hotKey);
    void scheduleLook();
    void lookAtKeyboard();

    X11Connection &m_connection;
    X11KeyGrabs m_grabs;
    X11Connection::HandlerToken m_token = 0;
    std::optional<X11Modifiers> m_modifiers; ///< nothing until the server has told
    bool m_followsKeyboard = false;
    quint8 m_keyboardEvent = 0; ///< the number of the keyboard extension's events; 0 without it
    bool m_lookScheduled = false;
    int m_lateLooks = 0; ///< in a row
    HotKeyRef m_lastReference = 0;
    std::map<HotKeyRef, HotKey> m_hotKeys;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
    Handler m_handler;
};

} // namespace orvesa
