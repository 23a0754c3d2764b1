#pragma once

// The terminal on standard input while a secret is typed: it shows nothing, and signals that would end or stop the
// program are held until it shows everything again.
//
// Main thread, one at a time, for the time of one question. Makes the terminal as it was when it goes.

#include <QtGlobal>

#include <array>
#include <csignal>

#include <termios.h>

namespace orvesa {

class QuietTerminal final {
public:
    QuietTerminal();
    ~QuietTerminal();
    Q_DISABLE_COPY_MOVE(QuietTerminal)

    enum class Event { input, signal };
    /// Waits until there is something to read, or a signal came.
    [[nodiscard]] Event awaitEvent();
    /// The first of the signals that came; 0 when none did.
    [[nodiscard]] int signal() const { return m_signal; }

private:
    static constexpr std::array signalsToHold{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};

    void holdSignals();

    termios m_usual{};
    bool m_isTerminal = false;
    std::array<int, 2> m_pipe{-1, -1}; ///< read and write end
    std::array<struct sigaction, signalsToHold.size()> m_usualActions{};
    int m_signal = 0;
};

} // namespace orvesa
