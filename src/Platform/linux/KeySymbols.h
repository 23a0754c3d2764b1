#pragma once

// What the key symbols of X11 and Wayland keyboards stand for. Pure functions, any thread.

#include <QString>
#include <QtGlobal>

namespace orvesa::KeySymbols {

inline constexpr quint32 escape = 0xff1b;

/// The text that the symbol types; for a dead accent the accent by itself. Empty when it types nothing.
[[nodiscard]] QString characters(quint32 symbol);
/// Whether it only changes what other keys do: Shift, Alt, AltGr, the locks, a layout switch.
[[nodiscard]] bool isModifier(quint32 symbol);
[[nodiscard]] bool isKeypad(quint32 symbol);

} // namespace orvesa::KeySymbols
