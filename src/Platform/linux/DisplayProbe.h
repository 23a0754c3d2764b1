#pragma once

// Whether a window can be opened at all. Any thread.

namespace orvesa {

/// False when no display is named in the environment, or the one that is named does not answer. Asked before the window
/// system's library is started, because that one ends the process when there is none.
[[nodiscard]] bool hasDisplay();

} // namespace orvesa
