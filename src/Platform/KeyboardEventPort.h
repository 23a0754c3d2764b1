#pragma once

// Key strokes that the program makes for the user, and the modifier keys that are down, shaped like the Quartz event
// services' calls.
//
// Main thread. Key codes are macOS virtual key codes and flags KeyboardFlags on every desktop.

#include "Platform/ModifierBits.h"

#include <QtGlobal>

namespace orvesa {

enum class KeyTransition { down, up };

class KeyboardEventPort {
public:
    virtual ~KeyboardEventPort() = default;

    /// The modifier keys that are held now, whoever holds them.
    [[nodiscard]] virtual quint32 modifierFlags() = 0;

    /// Presses or releases a key with exactly these modifiers, whatever else is held. Command is the desktop's own key
    /// for application commands. False when the event could not be made, or is withheld because it would do something
    /// else than the command in the window that has the keyboard.
    virtual bool post(quint16 keyCode, KeyTransition transition, quint32 flags) = 0;
};

} // namespace orvesa
