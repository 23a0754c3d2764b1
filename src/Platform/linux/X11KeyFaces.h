#pragma once

// What the keys of the X server's keyboard type, by key code, group and level. Value type, any thread;
// read() on that of its connection.

#include <QString>

#include <vector>

#include <xcb/xcb.h>

namespace orvesa {

class X11Connection;

class X11KeyFaces final {
public:
    /// Asks the server; empty without the keyboard extension. The connection must have announced that extension.
    [[nodiscard]] static X11KeyFaces read(X11Connection &connection);
    [[nodiscard]] bool isEmpty() const { return m_keys.empty(); }

    /// What the key types in the group that a key event's `state` holds, with no modifier but Shift. Keys of the keypad
    /// type their digits whatever Num Lock says, and dead keys their accent. Empty for a key that types nothing.
    [[nodiscard]] QString characters(xcb_keycode_t keyCode, quint16 state) const;
    /// The symbol without any modifier; 0 for none.
    [[nodiscard]] xcb_keysym_t plainSymbol(xcb_keycode_t keyCode, quint16 state) const;
    /// Whether the key only changes what others do: Shift, Alt, AltGr, Caps Lock, a layout switch.
    [[nodiscard]] bool isModifier(xcb_keycode_t keyCode, quint16 state) const;

private:
    struct Key {
        std::vector<xcb_keysym_t> symbols{};
        std::size_t groups = 0;
        std::size_t levels = 0;
        quint8 groupInfo = 0; ///< what a group stands for that the key does not have
    };

    [[nodiscard]] xcb_keysym_t symbol(xcb_keycode_t keyCode, quint16 state, std::size_t level) const;

    xcb_keycode_t m_firstKey = 0;
    std::vector<Key> m_keys;
};

} // namespace orvesa
