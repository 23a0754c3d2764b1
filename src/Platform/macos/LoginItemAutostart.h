#pragma once

// The program as one of the user's login items, which the system settings list. Main thread.

#include "Platform/AutostartPort.h"

namespace orvesa {

class LoginItemAutostart final : public AutostartPort {
public:
    [[nodiscard]] bool isOn() const override;
    [[nodiscard]] bool turnOn() override;
    [[nodiscard]] bool turnOff() override;
};

} // namespace orvesa
