#pragma once

// Posts the key strokes of application commands. Static operations; main thread.

#include "Platform/KeyboardEventPort.h"

namespace orvesa {

class KeyboardEventSender final {
public:
    KeyboardEventSender() = delete;

    /// Command and the key, down and up. An event that cannot be made is left out.
    static void sendCommandKeystroke(KeyboardEventPort &keyboard, quint16 keyCode);
};

} // namespace orvesa
