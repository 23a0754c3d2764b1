#include "desktop/Terminal.h"

#include <array>
#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <utmp.h>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

/// Text for exec(), which wants arrays of pointers that end in null.
class Words final {
public:
    explicit Words(const QStringList &words)
    {
        for (const QString &word : words) {
            m_bytes.push_back(word.toLocal8Bit());
        }
        for (QByteArray &bytes : m_bytes) {
            m_pointers.push_back(bytes.data());
        }
        m_pointers.push_back(nullptr);
    }
    [[nodiscard]] char *const *data() const { return m_pointers.data(); }

private:
    std::vector<QByteArray> m_bytes;
    std::vector<char *> m_pointers;
};

} // namespace

Terminal::Terminal(Desktop &desktop, const QString &program, const QStringList &arguments)
{
    const Words words(QStringList{program} + arguments);
    const Words environment(desktop.environment().toStringList());
    if (::openpty(&m_master, &m_slave, nullptr, nullptr, nullptr) != 0) {
        throw DesktopError(u"no terminal can be had"_s);
    }
    for (const int descriptor : {m_master, m_slave}) {
        ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    }
    ::fcntl(m_master, F_SETFL, O_NONBLOCK);
    m_process = ::fork();
    if (m_process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::login_tty(m_slave);
        ::execvpe(words.data()[0], words.data(), environment.data());
        ::_exit(127);
    }
    if (m_process < 0) {
        throw DesktopError(u"%1 did not start"_s.arg(program));
    }
    m_processDescriptor = static_cast<int>(::syscall(SYS_pidfd_open, m_process, 0));
    m_output.emplace(m_master, QSocketNotifier::Read);
    QObject::connect(&*m_output, &QSocketNotifier::activated, &*m_output, [this] { collect(); });
    m_end.emplace(m_processDescriptor, QSocketNotifier::Read);
    QObject::connect(&*m_end, &QSocketNotifier::activated, &*m_end, [this] {
        m_end->setEnabled(false);
        reap();
    });
}

Terminal::~Terminal()
{
    m_end.reset();
    m_output.reset();
    if (!m_status) {
        ::kill(m_process, SIGKILL);
        reap();
    }
    for (const int descriptor : {m_processDescriptor, m_slave, m_master}) {
        ::close(descriptor);
    }
}

void Terminal::collect()
{
    std::array<char, 4096> bytes{};
    for (ssize_t count = 0; (count = ::read(m_master, bytes.data(), bytes.size())) > 0;) {
        m_shown.append(bytes.data(), count);
    }
}

void Terminal::reap()
{
    int status = 0;
    while (::waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
    }
    m_status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

void Terminal::awaitShown(const QByteArray &text, qsizetype times)
{
    waitUntil([&] { return m_shown.count(text) >= times; }, u"\"%1\" in the terminal"_s.arg(QString::fromUtf8(text)));
}

void Terminal::type(const QByteArray &bytes)
{
    if (::write(m_master, bytes.constData(), static_cast<std::size_t>(bytes.size())) != bytes.size()) {
        throw DesktopError(u"nothing can be typed into the terminal"_s);
    }
}

bool Terminal::isShowingWhatIsTyped() const
{
    termios state{};
    if (::tcgetattr(m_slave, &state) != 0) {
        throw DesktopError(u"the terminal does not tell its state"_s);
    }
    return (state.c_lflag & ECHO) != 0;
}

int Terminal::unread() const
{
    int count = -1;
    ::ioctl(m_slave, FIONREAD, &count);
    return count;
}

void Terminal::signalForeground(int signal) const
{
    pid_t group = 0;
    if (::ioctl(m_master, TIOCGPGRP, &group) != 0 || group <= 1 || ::kill(-group, signal) != 0) {
        throw DesktopError(u"nothing runs in the terminal's foreground"_s);
    }
}

int Terminal::awaitEnd()
{
    waitUntil([this] { return m_status.has_value(); }, u"the end of the program in the terminal"_s);
    collect();
    return *m_status;
}

} // namespace orvesa::desktop
