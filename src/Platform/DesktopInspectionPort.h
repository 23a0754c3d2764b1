#pragma once

// What the desktop that the program runs on offers, for a page that tells the user what is wrong.
//
// Main thread. Asked for once, by a process that has nothing else to do: an answer may take up to two seconds. Nothing
// is started and nothing is changed by asking.

#include <QCoroTask>

#include <QString>
#include <QStringList>

#include <optional>

namespace orvesa {

class DesktopInspectionPort {
public:
    enum class Session { none, x11, wayland };
    enum class Accessibility {
        noSessionBus,
        noAccessibilityBus, ///< nothing answers, or would when asked
        switchedOff,        ///< the bus is there, applications are not told to use it
        switchedOn,
    };
    enum class KeyStore {
        noSessionBus,
        noLibrary, ///< what the program speaks to key stores with is not installed
        absent,    ///< none runs, none would be started
        startable, ///< none runs; the first use starts one
        noCollection,
        unreadable, ///< it answers, and knows nothing of the keyring that it names as the default one
        locked,
        unlocked,
        silent, ///< one runs and does not answer
    };
    enum class ScreenCapture {
        there,
        noTool,   ///< the program that lets the user choose an area is missing
        noPortal, ///< it is there, and the Wayland desktop has no portal that would show it the screen
    };
    enum class Tray { none, statusNotifier, embedding };

    virtual ~DesktopInspectionPort() = default;

    /// The desktop's own name for itself ("GNOME"); empty when it has none.
    [[nodiscard]] virtual QString desktopName() const = 0;
    [[nodiscard]] virtual Session session() const = 0;
    /// Whether windows can be shown and keys be grabbed there (the display answers).
    [[nodiscard]] virtual bool hasDisplay() const = 0;
    /// Whether programs can ask the desktop for global shortcuts where they may not take keys themselves.
    [[nodiscard]] virtual bool hasShortcutPortal() const = 0;
    [[nodiscard]] virtual Accessibility accessibility() const = 0;
    [[nodiscard]] virtual KeyStore keyStore() const = 0;
    [[nodiscard]] virtual Tray tray() const = 0;
    /// The packages of languages that text recognition misses; nothing when the recognition itself is missing or fails.
    [[nodiscard]] virtual QCoro::Task<std::optional<QStringList>> missingRecognitionLanguages() = 0;
    [[nodiscard]] virtual ScreenCapture screenCapture() const = 0;
};

} // namespace orvesa
