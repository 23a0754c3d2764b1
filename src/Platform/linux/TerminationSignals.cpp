#include "Platform/linux/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstdint>
#include <utility>

#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace orvesa {

namespace {

constexpr std::array signalsToFollow{SIGTERM, SIGINT, SIGHUP};

/// What the signal's handler writes to: nothing else is safe there.
int descriptor = -1;

extern "C" void noteSignal(int)
{
    const int before = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(descriptor, &one, sizeof one);
    errno = before;
}

void setDisposition(void (*disposition)(int), int flags)
{
    struct sigaction action {};
    action.sa_handler = disposition;
    action.sa_flags = flags;
    ::sigemptyset(&action.sa_mask);
    for (const int signal : signalsToFollow) {
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> handler) : m_handler(std::move(handler))
{
    descriptor = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0) {
        return; // the defaults will do
    }
    m_notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        m_notifier->setEnabled(false);
        setDisposition(SIG_DFL, 0);
        m_handler();
    });
    setDisposition(noteSignal, SA_RESTART);
}

TerminationSignals::~TerminationSignals()
{
    if (descriptor >= 0) {
        setDisposition(SIG_DFL, 0);
        m_notifier.reset();
        ::close(std::exchange(descriptor, -1));
    }
}

} // namespace orvesa
