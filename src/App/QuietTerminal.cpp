#include "App/QuietTerminal.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace orvesa {

namespace {

/// Where the handler notes a signal: nothing else is safe there.
volatile int noteDescriptor = -1;

void noteSignal(int signal)
{
    const int before = errno;
    const auto note = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = ::write(noteDescriptor, &note, 1);
    errno = before;
}

} // namespace

QuietTerminal::QuietTerminal()
{
    holdSignals();
    m_isTerminal = ::tcgetattr(STDIN_FILENO, &m_usual) == 0;
    termios quiet = m_usual;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    if (m_isTerminal) {
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
}

QuietTerminal::~QuietTerminal()
{
    if (m_isTerminal) {
        // What was typed and not read yet is part of a secret: it goes.
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_usual);
        std::fputs("\n", stderr);
    }
    if (noteDescriptor >= 0) {
        for (std::size_t index = 0; index < signalsToHold.size(); ++index) {
            ::sigaction(signalsToHold[index], &m_usualActions[index], nullptr);
        }
        noteDescriptor = -1;
        ::close(m_pipe[0]);
        ::close(m_pipe[1]);
    }
}

void QuietTerminal::holdSignals()
{
    if (::pipe(m_pipe.data()) != 0) {
        return; // the defaults will do
    }
    for (const int end : m_pipe) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    noteDescriptor = m_pipe[1];
    struct sigaction action {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    for (std::size_t index = 0; index < signalsToHold.size(); ++index) {
        ::sigaction(signalsToHold[index], nullptr, &m_usualActions[index]);
        // What whoever started the program wanted ignored stays so.
        if (m_usualActions[index].sa_handler != SIG_IGN) {
            ::sigaction(signalsToHold[index], &action, nullptr);
        }
    }
}

QuietTerminal::Event QuietTerminal::awaitEvent()
{
    std::array<pollfd, 2> waited{pollfd{STDIN_FILENO, POLLIN, 0}, pollfd{m_pipe[0], POLLIN, 0}};
    int count = 0;
    do {
        count = ::poll(waited.data(), waited.size(), -1);
    } while (count < 0 && errno == EINTR);
    unsigned char note = 0;
    if (waited[1].revents != 0 && ::read(m_pipe[0], &note, 1) == 1) {
        m_signal = note;
        return Event::signal;
    }
    return Event::input;
}

} // namespace orvesa
