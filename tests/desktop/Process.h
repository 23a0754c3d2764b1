#pragma once

// One program running on a private desktop.
//
// Main thread; owned by its Desktop, which ends it at the latest when the desktop ends. The program is the leader of a
// process group of its own, so that what it starts ends with it, and it ends when the test process dies.

#include "desktop/Waiting.h"

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>

namespace orvesa::desktop {

struct ProcessResult {
    int exitCode = -1; ///< -1 when a signal ended it
    bool crashed = false;
    QByteArray standardOutput;
    QByteArray standardError;
};

class Process final {
public:
    /// Starts the program and returns when it runs. `inChild` runs in the child between fork and exec
    /// (async-signal-safe only).
    Process(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment,
            const QString &workingFolder, std::function<void()> inChild = {});
    ~Process();
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;

    [[nodiscard]] qint64 pid() const { return m_pid; }
    [[nodiscard]] const QString &program() const { return m_program; }
    [[nodiscard]] bool isRunning() const;

    /// Everything it has written so far.
    [[nodiscard]] QByteArray standardOutput() const { return m_output; }
    [[nodiscard]] QByteArray standardError() const { return m_errors; }
    /// The next line of standard output without its newline. Throws DeadlineError, or DesktopError when the output
    /// ended before.
    [[nodiscard]] QByteArray readLine(std::chrono::milliseconds deadline = usualDeadline);
    void write(const QByteArray &bytes);
    void closeInput();

    /// SIGTERM to its group, then a bounded wait, then SIGKILL to the group. Nothing when it has ended.
    void terminate(std::chrono::milliseconds grace = std::chrono::milliseconds(3'000));
    /// SIGTERM to its group without waiting.
    void requestEnd();
    void kill();
    /// SIGSTOP and SIGCONT: an application that has frozen.
    void freeze();
    void thaw();
    /// Waits for its end by itself. Throws DeadlineError.
    ProcessResult awaitEnd(std::chrono::milliseconds deadline = usualDeadline);

private:
    void collect();
    void signalGroup(int signal) const;

    QString m_program;
    QProcess m_process;
    qint64 m_pid = 0;
    QByteArray m_output;
    QByteArray m_errors;
    qsizetype m_linePosition = 0;
};

} // namespace orvesa::desktop
