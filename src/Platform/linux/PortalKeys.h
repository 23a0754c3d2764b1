#pragma once

// Keys as the portal for global shortcuts writes them: by what they type, while the program knows them by their place.
//
// Main thread. What a key types is the X server's word, which inside a Wayland session has the desktop's own layouts;
// without its answer a letter is what the user is shown, and another key what it is in the layout that programs without
// a display take for granted.

#include "Platform/linux/X11Connection.h"
#include "Platform/linux/X11KeyFaces.h"

#include <QString>
#include <QTimer>

#include <functional>

namespace orvesa {

class PortalKeys final {
public:
    using ChangeHandler = std::function<void()>;

    /// The connection must outlive this object. `changed` is called from the event loop when the user has got other
    /// layouts, after the first key was asked for, or when a server answers again that did not when it was asked.
    PortalKeys(X11Connection &connection, ChangeHandler changed);
    ~PortalKeys();
    Q_DISABLE_COPY_MOVE(PortalKeys)

    /// The keys as the portal writes them ("ALT+d"); nothing for a key without a name. Of several layouts that one
    /// counts in which the key has the face `label`; where the key has it in none, the key that does is meant.
    [[nodiscard]] QString trigger(quint32 macKeyCode, quint32 carbonModifiers, const QString &label);
    /// The same as long as a key has that face; nothing when none has. While keys are sent to programs, the X server
    /// has another keymap than the user.
    [[nodiscard]] QString triggerWithFace(quint32 macKeyCode, quint32 carbonModifiers, const QString &label);

private:
    enum class Faceless { taken, leftOut };

    void listen();
    /// What the keys type; nothing while the server does not answer.
    [[nodiscard]] X11KeyFaces readFaces();
    [[nodiscard]] QString write(quint32 macKeyCode, quint32 carbonModifiers, const QString &label, Faceless faceless);
    [[nodiscard]] xcb_keysym_t symbolOf(xcb_keycode_t keyCode, quint32 carbonModifiers, const QString &label,
                                        Faceless faceless);

    X11Connection &m_connection;
    X11Connection::HandlerToken m_token = 0; ///< 0 without the keyboard extension
    bool m_isServerAwaited = false;
    QTimer m_settling;
};

} // namespace orvesa
