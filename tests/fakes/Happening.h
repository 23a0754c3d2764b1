#pragma once

// Waiting for what comes through the event loop, in tests that have no desktop. Main thread.

#include <functional>

namespace orvesa {

/// Processes events until the condition holds or ten seconds have passed, which is more than enough; whether it holds.
[[nodiscard]] bool happens(const std::function<bool()> &condition);

} // namespace orvesa
