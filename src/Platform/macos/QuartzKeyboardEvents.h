#pragma once

// Key strokes through Quartz event services. Main thread.

#include "Platform/KeyboardEventPort.h"

namespace orvesa {

class QuartzKeyboardEvents final : public KeyboardEventPort {
public:
    [[nodiscard]] quint32 modifierFlags() override;
    bool post(quint16 keyCode, KeyTransition transition, quint32 flags) override;
};

} // namespace orvesa
