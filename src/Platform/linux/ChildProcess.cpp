#include "Platform/linux/ChildProcess.h"

namespace orvesa {

void ChildProcessEnd::operator()(QProcess *process) const
{
    constexpr int boundInMilliseconds = 500;
    process->disconnect();
    if (process->state() != QProcess::NotRunning) {
        process->kill();
        if (!process->waitForFinished(boundInMilliseconds)) {
            return;
        }
    }
    delete process;
}

ChildProcess makeChildProcess()
{
    return ChildProcess(new QProcess);
}

} // namespace orvesa
