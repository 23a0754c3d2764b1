#pragma once

// A key-down event as far as shortcuts are concerned. Value type.

#include <QFlags>
#include <QString>

namespace orvesa {

/// Device-independent modifier flags; capsLock and function exist only to be ignored.
enum class KeyModifier : quint32 {
    capsLock = 0x10000,
    shift = 0x20000,
    control = 0x40000,
    option = 0x80000,
    command = 0x100000,
    function = 0x800000,
};
Q_DECLARE_FLAGS(KeyModifiers, KeyModifier)
Q_DECLARE_OPERATORS_FOR_FLAGS(KeyModifiers)

struct KeyPress {
    quint32 keyCode = 0; ///< macOS virtual key code
    KeyModifiers modifiers;
    QString characters; ///< as typed without any modifier but Shift
};

} // namespace orvesa
