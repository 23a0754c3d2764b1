#pragma once

// The desktop's keyboard, pressed for real through XTest: programs, grabs and the server's own state cannot tell it
// apart.
//
// Main thread; owned by the Desktop. Every operation returns after the server has processed it.

#include <QMap>
#include <QString>
#include <QStringList>

#include <xcb/xcb.h>

#include <chrono>
#include <vector>

struct _XCBKeySymbols;

namespace orvesa::desktop {

class XSession;

class Keyboard final {
public:
    explicit Keyboard(XSession &session);
    ~Keyboard();
    Keyboard(const Keyboard &) = delete;
    Keyboard &operator=(const Keyboard &) = delete;

    /// Presses and releases a combination, in the order written: "Alt+d", "Ctrl+Shift+c", "Escape", "F5",
    /// "Super+space". Names: Ctrl, Alt, Shift, Super, an X keysym name or a single character.
    void press(const QString &combination);
    /// The same with nothing in between: the server has all of it before any program has heard of the first key.
    void pressAtOnce(const QString &combination);
    /// The same as quick fingers do it, ten milliseconds from key to key, holding them all so much longer.
    void pressByHand(const QString &combination, std::chrono::milliseconds hold = std::chrono::milliseconds::zero());
    /// Likewise, but the keys come up in the order in which they went down: modifiers first.
    void rollByHand(const QString &combination);
    /// The key at a place of the keyboard, whatever it types.
    void pressCode(xcb_keycode_t code);
    enum class Turn { down, up };
    /// The same, one way only.
    void turnCode(xcb_keycode_t code, Turn turn);
    /// Has exactly these modifiers locked, as Caps Lock and Num Lock lock theirs, whatever layout has those keys where.
    void lock(quint8 modifiers);
    /// Switches to the keyboard's layout of this number, as its user does; the first is 0.
    void lockLayout(quint8 number);
    /// One key by the same names, held until keyUp.
    void keyDown(const QString &key);
    void keyUp(const QString &key);
    /// Types any text; characters the layout lacks are put on a spare key, and stay there. '\n' is Return.
    void type(const QString &text);
    /// Whether another program has a grab on the combination (modifiers first, one key last). Nothing is left grabbed.
    [[nodiscard]] bool isTaken(const QString &combination);
    /// Takes the combination, as a program that is not the one under test would, until the desktop ends. (isTaken() is
    /// about others, and lets go of it.)
    void take(const QString &combination);
    /// The keys the server holds to be down now, as key codes.
    [[nodiscard]] std::vector<xcb_keycode_t> keysDown() const;

private:
    struct Stroke {
        xcb_keycode_t code = 0;
        bool shift = false;
    };
    struct Combination {
        quint16 modifiers = 0;
        xcb_keycode_t code = 0;
    };
    [[nodiscard]] Combination combinationFor(const QString &combination);
    /// Whether the server refused because another program has it.
    [[nodiscard]] bool isGrabRefused(const Combination &combination);
    void useKeyboardExtension();
    [[nodiscard]] Stroke strokeFor(xcb_keysym_t keysym);
    [[nodiscard]] Stroke bindSpareKey(xcb_keysym_t keysym);
    [[nodiscard]] static QStringList keysOf(const QString &combination);
    void turnByHand(const QStringList &down, std::chrono::milliseconds hold, const QStringList &up);
    void queue(xcb_keycode_t code, bool down);
    void send(xcb_keycode_t code, bool down);

    XSession &m_session;
    _XCBKeySymbols *m_symbols = nullptr;
    QMap<xcb_keysym_t, xcb_keycode_t> m_bound; ///< spare keys given a keysym
    std::vector<xcb_keycode_t> m_spare;
};

} // namespace orvesa::desktop
