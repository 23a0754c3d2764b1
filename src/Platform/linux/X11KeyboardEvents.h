#pragma once

// Key strokes through the XTest extension, and the modifiers that the server holds to be down.
//
// Main thread. For a stroke every key that is held and does not belong to it is let go, or the application would see
// another combination; modifiers that the user still holds after it are pressed again. Between press and release
// nothing else of this program may run. In a terminal the copy stroke becomes the terminal's own, or none at all, since
// the usual one interrupts what runs there; and a program that hangs gets none.

#include "Platform/KeyboardEventPort.h"
#include "Platform/linux/X11Connection.h"

#include <functional>
#include <optional>
#include <vector>

namespace orvesa {

class X11KeyboardEvents final : public KeyboardEventPort {
public:
    /// Whether what has the keyboard in this process is known to be something else than a terminal.
    using NoTerminalTest = std::function<bool(qint64 processIdentifier)>;

    /// The connection must outlive this object. It must be one on which nobody else listens to raw key events.
    X11KeyboardEvents(X11Connection &connection, NoTerminalTest isNoTerminal);
    ~X11KeyboardEvents() override;

    [[nodiscard]] quint32 modifierFlags() override;
    bool post(quint16 keyCode, KeyTransition transition, quint32 flags) override;

private:
    /// What is down because of the stroke that was begun, and what was let go for it.
    struct Stroke {
        quint16 macKeyCode = 0;
        xcb_keycode_t key = 0;
        std::vector<xcb_keycode_t> pressed; ///< modifiers
        std::vector<xcb_keycode_t> lifted;  ///< modifiers
    };

    /// What is needed to know what the keys do. False while the server does not answer: a stroke made without knowing
    /// that could leave a modifier down.
    [[nodiscard]] bool prepare();
    [[nodiscard]] bool begin(quint16 keyCode, quint32 flags);
    void end();
    /// The modifiers for the window that has the keyboard; nothing when the stroke must not reach it.
    [[nodiscard]] std::optional<quint32> flagsForFocus(quint32 flags);
    /// The key that types the letter of the place in the layout that is in use, or the one at the place; nothing when
    /// the server does not tell.
    [[nodiscard]] std::optional<xcb_keycode_t> keyFor(quint16 macKeyCode);
    [[nodiscard]] std::vector<xcb_keycode_t> keysDown();
    void send(quint8 type, xcb_keycode_t key);
    void putBack(const std::vector<xcb_keycode_t> &modifiers);
    enum class Listening { off, on };
    void listen(Listening listening);
    /// How often each of the keys was let go since the last call, by whomever.
    [[nodiscard]] std::vector<xcb_keycode_t> releases();

    X11Connection &m_connection;
    NoTerminalTest m_isNoTerminal;
    bool m_prepared = false;
    quint8 m_inputOpcode = 0;
    bool m_hasKeyboardExtension = false;
    std::optional<Stroke> m_stroke;
};

} // namespace orvesa
