#pragma once

// Virtual key codes in the macOS numbering, which the whole program uses, and the evdev key codes that X11 and Wayland
// keyboards report (X11's own key codes are those plus eight). A pure table, any thread.
//
// The table goes by position, as both numberings do: code 0 is the key right of Caps Lock, whatever letter it types.

#include <QtGlobal>

#include <optional>
#include <span>

namespace orvesa::MacKeyCodes {

inline constexpr quint32 escape = 0x35; ///< kVK_Escape

struct Pair {
    quint32 macCode;
    quint32 evdevCode;
};

/// Every pair, by macOS code. No code occurs twice on either side.
[[nodiscard]] std::span<const Pair> all();
/// The evdev code at the position of a macOS code; nothing for a key that evdev keyboards do not have.
[[nodiscard]] std::optional<quint32> toEvdev(quint32 macCode);
[[nodiscard]] std::optional<quint32> fromEvdev(quint32 evdevCode);
/// The same for the key codes of X11, which Wayland programs use too.
[[nodiscard]] std::optional<quint32> toX11(quint32 macCode);
[[nodiscard]] std::optional<quint32> fromX11(quint32 keyCode);

} // namespace orvesa::MacKeyCodes
