#include "desktop/Process.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

Process::Process(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment,
                 const QString &workingFolder, std::function<void()> inChild)
    : m_program(program)
{
    m_process.setProcessEnvironment(environment);
    m_process.setWorkingDirectory(workingFolder);
    m_process.setChildProcessModifier([parent = getpid(), inChild = std::move(inChild)] {
        setpgid(0, 0);
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) // it died before the signal was asked for
            _exit(127);
        if (inChild)
            inChild();
    });
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process, [this] { collect(); });
    QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process, [this] { collect(); });
    m_process.start(program, arguments);
    if (!m_process.waitForStarted())
        throw DesktopError(u"%1 did not start: %2"_s.arg(program, m_process.errorString()));
    m_pid = m_process.processId();
}

Process::~Process()
{
    kill();
}

bool Process::isRunning() const
{
    return m_process.state() != QProcess::NotRunning;
}

void Process::collect()
{
    m_output += m_process.readAllStandardOutput();
    m_errors += m_process.readAllStandardError();
}

QByteArray Process::readLine(std::chrono::milliseconds deadline)
{
    const auto newline = [this] { return m_output.indexOf('\n', m_linePosition); };
    waitUntil([&] { return newline() >= 0 || !isRunning(); }, u"a line from %1"_s.arg(m_program), deadline);
    const qsizetype end = newline();
    if (end < 0)
        throw DesktopError(u"%1 ended without the awaited line; it said: %2"_s.arg(
            m_program, QString::fromUtf8(m_errors.right(2'000))));
    QByteArray line = m_output.mid(m_linePosition, end - m_linePosition);
    m_linePosition = end + 1;
    return line;
}

void Process::write(const QByteArray &bytes)
{
    m_process.write(bytes);
}

void Process::closeInput()
{
    m_process.closeWriteChannel();
}

void Process::signalGroup(int signal) const
{
    // Only while its leader has not been reaped: until then nobody else can have its number.
    if (isRunning())
        ::kill(static_cast<pid_t>(-m_pid), signal);
}

void Process::requestEnd()
{
    signalGroup(SIGTERM);
    signalGroup(SIGCONT);
}

void Process::terminate(std::chrono::milliseconds grace)
{
    requestEnd();
    if (!happensWithin(grace, [this] { return !isRunning(); }))
        kill();
}

void Process::kill()
{
    if (!isRunning())
        return;
    signalGroup(SIGKILL);
    m_process.waitForFinished(-1); // a killed process cannot refuse
}

void Process::freeze()
{
    signalGroup(SIGSTOP);
}

void Process::thaw()
{
    signalGroup(SIGCONT);
}

ProcessResult Process::awaitEnd(std::chrono::milliseconds deadline)
{
    waitUntil([this] { return !isRunning(); }, u"the end of %1"_s.arg(m_program), deadline);
    collect();
    const bool crashed = m_process.exitStatus() == QProcess::CrashExit;
    return {crashed ? -1 : m_process.exitCode(), crashed, m_output, m_errors};
}

} // namespace orvesa::desktop
