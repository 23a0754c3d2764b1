#pragma once

// What every desktop's hot keys promise, to be asked of the fake that other tests rely on and of the real ones.

#include "Platform/HotKeyPort.h"

namespace orvesa::tests {

/// The desktop around the hot keys.
struct HotKeyBench {
    std::function<void(quint32 keyCode, quint32 modifiers)> press;
    /// Returns when every press has reached the program.
    std::function<void()> deliver;
    /// Another program takes the combination, for as long as the test runs.
    std::function<void(quint32 keyCode, quint32 modifiers)> takeByAnother;
};

/// Expects the whole contract of hot keys that nobody uses yet, and leaves them so.
void expectHotKeyContract(HotKeyPort &hotKeys, const HotKeyBench &bench);

} // namespace orvesa::tests
