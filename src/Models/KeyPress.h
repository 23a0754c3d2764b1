#pragma once

// A key-down event as far as shortcuts are concerned. Value type, any thread.

#include "Platform/ModifierBits.h"

#include <QFlags>
#include <QString>

namespace orvesa {

/// Device-independent modifier flags; capsLock and function exist only to be ignored.
enum class KeyModifier : quint32 {
    capsLock = KeyboardFlags::capsLock,
    shift = KeyboardFlags::shift,
    control = KeyboardFlags::control,
    option = KeyboardFlags::option,
    command = KeyboardFlags::command,
    function = KeyboardFlags::function,
};
Q_DECLARE_FLAGS(KeyModifiers, KeyModifier)
Q_DECLARE_OPERATORS_FOR_FLAGS(KeyModifiers)

struct KeyPress {
    quint32 keyCode = 0; ///< macOS virtual key code
    KeyModifiers modifiers;
    QString characters; ///< as typed without any modifier but Shift
};

} // namespace orvesa
