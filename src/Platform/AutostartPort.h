#pragma once

// Whether the desktop starts the program when the user logs in. Main thread.

#include <QString>

namespace orvesa {

class AutostartPort {
public:
    virtual ~AutostartPort() = default;

    [[nodiscard]] virtual bool isOn() const = 0;
    /// Has this program started at login. False when that could not be written.
    [[nodiscard]] virtual bool turnOn() = 0;
    /// No longer; also true when it was not started before.
    [[nodiscard]] virtual bool turnOff() = 0;
};

} // namespace orvesa
