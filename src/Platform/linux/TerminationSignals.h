#pragma once

// Has the program end in good order when it is told to by a signal: SIGTERM, as at the end of a session, SIGINT and
// SIGHUP. The handler runs from the event loop. A second signal, while the first is being followed, ends the program at
// once.
//
// Main thread; one at a time. Without it, or after it, signals do what they do by default. Programs started meanwhile
// have the defaults.

#include <QtGlobal>

#include <functional>
#include <memory>

QT_FORWARD_DECLARE_CLASS(QSocketNotifier)

namespace orvesa {

class TerminationSignals final {
public:
    explicit TerminationSignals(std::function<void()> handler);
    ~TerminationSignals();
    Q_DISABLE_COPY_MOVE(TerminationSignals)

private:
    std::function<void()> m_handler;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace orvesa
