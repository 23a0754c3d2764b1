#pragma once

// System-wide hot keys, shaped like the Carbon Event Manager's calls.
//
// Main thread; the handler is called on it. Key codes are macOS virtual key codes and modifiers CarbonModifier bits
// (Platform/ModifierBits.h) on every desktop.

#include <QString>
#include <QtGlobal>

#include <functional>

namespace orvesa {

namespace HotKeyStatus {
inline constexpr qint32 noErr = 0;
inline constexpr qint32 eventNotHandled = -9874; // eventNotHandledErr
inline constexpr qint32 hotKeyExists = -9878;    // eventHotKeyExistsErr: taken, by another program or by ourselves
inline constexpr qint32 hotKeyInvalid = -9879;   // eventHotKeyInvalidErr: no such key on this keyboard
inline constexpr qint32 notAvailable = -9868;    // eventInternalErr: no way to grab keys on this desktop
} // namespace HotKeyStatus

struct HotKeyID {
    quint32 signature = 0; ///< four-character code
    quint32 id = 0;
};

/// A registration's reference, meaningful to its adapter only; 0 is none.
using HotKeyRef = quint64;

struct HotKeyRegistration {
    qint32 status = HotKeyStatus::noErr;
    HotKeyRef reference = 0;
};

class HotKeyPort {
public:
    /// Called once per press, however long the key is held. Its return value is an event-handler status.
    using Handler = std::function<qint32(HotKeyID)>;

    virtual ~HotKeyPort() = default;

    [[nodiscard]] virtual qint32 installHandler(Handler handler) = 0;
    virtual void removeHandler() = 0;
    /// A desktop that does not answer for now may take the keys once it does; should another program have them by then,
    /// the log says so.
    [[nodiscard]] virtual HotKeyRegistration registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id) = 0;
    virtual qint32 unregisterHotKey(HotKeyRef reference) = 0;
    /// What the hot key is for, in words for the user. Before its registration, on desktops that have the user confirm
    /// it; others ignore it.
    virtual void describe([[maybe_unused]] HotKeyID id, [[maybe_unused]] const QString &description) {}
    /// The key's face as the user is shown it. Before its registration, on desktops that know keys by what they type;
    /// others ignore it.
    virtual void labelKey([[maybe_unused]] HotKeyID id, [[maybe_unused]] const QString &keyLabel) {}
};

} // namespace orvesa
