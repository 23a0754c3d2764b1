#pragma once

// What the adapters asked of the recorders that stand in for the system's C interfaces, in order, and what they did to
// objects that no program may do. Any thread.

#include <string>
#include <vector>

namespace orvesa::recorders {

void note(const std::string &call);
[[nodiscard]] std::vector<std::string> calls();

/// A use that crashes or leaks on macOS: of a freed object, of one of another type, of a null.
void noteMisuse(const std::string &misuse);
[[nodiscard]] std::vector<std::string> misuses();

void forgetCalls();

} // namespace orvesa::recorders
