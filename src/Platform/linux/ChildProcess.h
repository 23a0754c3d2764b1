#pragma once

// A child process that does not outlive its owner. Main thread.

#include <QProcess>

#include <memory>

namespace orvesa {

/// Kills the process if it runs, without another signal of it. It is gone at once then, unless the system holds it; in
/// that case it ends without us, since QProcess' own destructor would wait for half a minute.
struct ChildProcessEnd {
    void operator()(QProcess *process) const;
};

using ChildProcess = std::unique_ptr<QProcess, ChildProcessEnd>;

[[nodiscard]] ChildProcess makeChildProcess();

} // namespace orvesa
