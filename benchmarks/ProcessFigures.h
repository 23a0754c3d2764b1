#pragma once

// What the kernel says about a running process. Reads /proc; any thread. A process that has gone gives zeros.

#include <QStringList>
#include <QtGlobal>

namespace orvesa::benchmark {

struct MemoryFigures {
    double proportionalMegabytes = 0; ///< PSS: its own memory and its share of what it shares
    double anonymousMegabytes = 0;    ///< memory that no file stands behind: heap, stacks, relocated data
};

[[nodiscard]] MemoryFigures memoryOf(qint64 pid);
/// Times that any thread of it was put on a processor: context switches, voluntary or not.
[[nodiscard]] qint64 contextSwitchesOf(qint64 pid);
/// Nanoseconds that its threads ran so far.
[[nodiscard]] qint64 processorTimeOf(qint64 pid);
/// Paths of the shared libraries and plug-ins that it has mapped.
[[nodiscard]] QStringList mappedLibrariesOf(qint64 pid);

} // namespace orvesa::benchmark
