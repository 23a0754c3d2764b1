#pragma once

// What every desktop's keyboard events promise, to be asked of the fake that other tests rely on and of the real ones.

#include "Platform/KeyboardEventPort.h"

#include <functional>
#include <vector>

namespace orvesa::tests {

/// What the application in front gets of a key that is no modifier.
struct ReceivedKey {
    quint16 keyCode = 0;
    KeyTransition transition = KeyTransition::down;
    quint32 flags = 0;
    bool operator==(const ReceivedKey &) const = default;
};

struct KeyboardBench {
    /// The user holds these modifiers from now on, and no others.
    std::function<void(quint32 flags)> hold;
    /// Everything since the last question.
    std::function<std::vector<ReceivedKey>()> received;
    /// From now on no event can be made.
    std::function<void()> breakDown;
};

void expectKeyboardEventContract(KeyboardEventPort &keyboard, const KeyboardBench &bench);

} // namespace orvesa::tests
