#pragma once

// The bits that stand for modifier keys, in the macOS numbering that the whole program uses. Constants, any thread.

#include <QtGlobal>

namespace orvesa {

/// In a shortcut: the event-modifier bits of Carbon's Events.h (cmdKey, shiftKey, optionKey, controlKey).
namespace CarbonModifier {
inline constexpr quint32 command = 0x100;
inline constexpr quint32 shift = 0x200;
inline constexpr quint32 option = 0x800;
inline constexpr quint32 control = 0x1000;
} // namespace CarbonModifier

/// In a key event: the device-independent flags of Quartz events (kCGEventFlagMaskShift and the like in CGEventTypes.h),
/// which AppKit's events carry too.
namespace KeyboardFlags {
inline constexpr quint32 capsLock = 0x10000;
inline constexpr quint32 shift = 0x20000;
inline constexpr quint32 control = 0x40000;
inline constexpr quint32 option = 0x80000;
inline constexpr quint32 command = 0x100000;
inline constexpr quint32 function = 0x800000;
/// Those that a shortcut can have.
inline constexpr quint32 all = shift | control | option | command;
} // namespace KeyboardFlags

} // namespace orvesa
