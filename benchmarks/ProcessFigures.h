#pragma once

// What the kernel says about a running process. Reads /proc; any thread. A process that has gone gives zeros.

#include <QString>
#include <QStringList>

#include <map>

namespace orvesa::benchmark {

struct MemoryFigures {
    double proportionalMegabytes = 0; ///< PSS: its own memory and its share of what it shares
    double anonymousMegabytes = 0;    ///< memory that no file stands behind: heap, stacks, relocated data
};

[[nodiscard]] MemoryFigures memoryOf(qint64 pid);
/// For each of its threads, how often it left a processor so far: context switches, voluntary or not.
using ThreadSwitches = std::map<QString, qint64>;
[[nodiscard]] ThreadSwitches contextSwitchesOf(qint64 pid);
/// How often threads of it woke between the two moments. A thread that ended in between counts once.
[[nodiscard]] qint64 wakeUpsBetween(const ThreadSwitches &before, const ThreadSwitches &after);
/// Nanoseconds that its threads ran so far.
[[nodiscard]] qint64 processorTimeOf(qint64 pid);
/// Paths of the shared libraries and plug-ins that it has mapped.
[[nodiscard]] QStringList mappedLibrariesOf(qint64 pid);

} // namespace orvesa::benchmark
