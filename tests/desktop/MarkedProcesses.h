#pragma once

// Finding what was started on a private desktop: processes whose environment holds its mark, and their descendants.
// Read from /proc; processes of other users that cannot be read are never taken for ours.

#include <map>
#include <string>

#include <sys/types.h>

namespace orvesa::desktop {

/// True when the process' environment has exactly the entry `mark` ("NAME=VALUE").
[[nodiscard]] bool carriesMark(pid_t process, const std::string &mark);
/// Its parent; 0 when it has gone.
[[nodiscard]] pid_t parentOf(pid_t process);
/// Living processes that are ours, each with what makes it so: 0 for the mark itself, otherwise the parent that is
/// ours. The calling process is never among them.
[[nodiscard]] std::map<pid_t, pid_t> markedProcesses(const std::string &mark);

} // namespace orvesa::desktop
