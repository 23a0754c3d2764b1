#pragma once

// Counts how often a signal was sent. Main thread.

#include <QObject>

namespace orvesa {

class SignalCount final {
public:
    template <typename Sender, typename Signal>
    SignalCount(const Sender *sender, Signal signal)
    {
        QObject::connect(sender, signal, &m_context, [this] { ++m_count; });
    }
    Q_DISABLE_COPY_MOVE(SignalCount)

    [[nodiscard]] int size() const { return m_count; }

private:
    QObject m_context;
    int m_count = 0;
};

} // namespace orvesa
