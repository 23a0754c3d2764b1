#pragma once

// A program at a terminal: what it shows there, what is typed, and whether the terminal shows what is typed.
//
// Main thread. Must not outlive its Desktop. The program leads a session that has the terminal, as under a terminal
// emulator, so that the terminal's keys for signals work.

#include "desktop/Desktop.h"

#include <QSocketNotifier>

#include <optional>

namespace orvesa::desktop {

class Terminal final {
public:
    Terminal(Desktop &desktop, const QString &program, const QStringList &arguments);
    ~Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    /// Everything that the terminal has shown so far.
    [[nodiscard]] const QByteArray &shown() const { return m_shown; }
    /// Until the text has been shown so often. Throws DeadlineError.
    void awaitShown(const QByteArray &text, qsizetype times = 1);
    void type(const QByteArray &bytes);
    [[nodiscard]] bool isShowingWhatIsTyped() const;
    /// Bytes that were typed and that no program has read.
    [[nodiscard]] int unread() const;
    /// To the programs in the terminal's foreground.
    void signalForeground(int signal) const;
    /// Waits for the program's end; its exit code, 128 and more for a signal.
    int awaitEnd();

private:
    void collect();
    void reap();

    int m_master = -1;
    int m_slave = -1; ///< open, so that the terminal can be looked at when its programs have ended
    int m_process = -1;
    int m_processDescriptor = -1; ///< becomes readable at the process's end
    std::optional<int> m_status;
    QByteArray m_shown;
    std::optional<QSocketNotifier> m_output;
    std::optional<QSocketNotifier> m_end;
};

} // namespace orvesa::desktop
