#pragma once

// Keeps the process's memory, with whatever secrets are in it, out of core dumps. Any thread; inherited by children.

namespace orvesa::CoreDumps {

/// From now on a crash leaves no core file; and where the system hands dumps to a program of its own whatever the limit
/// says, there is no memory in them.
void turnOff();

} // namespace orvesa::CoreDumps
