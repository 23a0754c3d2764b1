#include "Platform/linux/X11SelectionReader.h"

#include <QTimer>

#include <algorithm>
#include <coroutine>

namespace orvesa {

namespace {

using Outcome = X11SelectionConversion::Outcome;

/// Suspends a coroutine until a conversion is over or its owner has been silent for too long.
class Wait final {
public:
    Wait(X11Connection &connection, X11SelectionConversion &conversion, QDeadlineTimer deadline)
        : m_connection(connection), m_conversion(conversion), m_deadline(deadline)
    {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { finish(); });
    }
    ~Wait() { m_connection.removeEventHandler(m_token); }
    Q_DISABLE_COPY_MOVE(Wait)

    /// Awaited by value.
    struct End {
        Wait &wait;
        [[nodiscard]] bool await_ready() const { return wait.m_conversion.outcome() != Outcome::pending; }
        void await_suspend(std::coroutine_handle<> waiting) { wait.begin(waiting); }
        void await_resume() const {}
    };
    [[nodiscard]] End end() { return {*this}; }

private:
    void begin(std::coroutine_handle<> waiting)
    {
        m_waiting = waiting;
        m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) {
            if (!m_waiting || !m_conversion.concerns(event)) {
                return;
            }
            const quint64 before = m_conversion.progress();
            m_conversion.handle(event);
            if (m_conversion.outcome() != Outcome::pending) {
                // From the event loop: what goes on now must not find itself within the dispatching of an event.
                m_timer.start(std::chrono::milliseconds::zero());
            } else if (m_conversion.progress() != before) {
                restart();
            }
        });
        restart();
    }

    void restart()
    {
        const auto left = std::chrono::milliseconds(m_deadline.remainingTime());
        m_timer.start(m_deadline.isForever() ? X11SelectionReader::silenceBound
                                             : std::min(X11SelectionReader::silenceBound, left));
    }

    void finish()
    {
        const std::coroutine_handle<> waiting = m_waiting;
        m_waiting = {};
        waiting.resume();
    }

    X11Connection &m_connection;
    X11SelectionConversion &m_conversion;
    QDeadlineTimer m_deadline;
    QTimer m_timer;
    X11Connection::HandlerToken m_token = 0;
    std::coroutine_handle<> m_waiting;
};

} // namespace

X11SelectionReader::X11SelectionReader(X11Connection &connection) : m_connection(connection) {}

QCoro::Task<X11SelectionReader::Answer> X11SelectionReader::convert(xcb_atom_t selection, xcb_atom_t target,
                                                                    qsizetype mostBytes, QDeadlineTimer deadline)
{
    X11SelectionConversion conversion(m_connection, selection, target, mostBytes);
    {
        Wait wait(m_connection, conversion, deadline);
        co_await wait.end();
    }
    Answer answer;
    answer.outcome = conversion.outcome();
    answer.data = conversion.data();
    co_return answer;
}

X11SelectionReader::Answer X11SelectionReader::convertNow(xcb_atom_t selection, xcb_atom_t target, qsizetype mostBytes)
{
    X11SelectionConversion conversion(m_connection, selection, target, mostBytes);
    const QDeadlineTimer deadline(X11Connection::replyBound, Qt::PreciseTimer);
    while (conversion.outcome() == Outcome::pending && !deadline.hasExpired() && m_connection.isValid()) {
        const auto events = m_connection.takeEvents(
            [&conversion](const xcb_generic_event_t &event) { return conversion.concerns(event); });
        for (const auto &event : events) {
            conversion.handle(*event);
        }
        if (events.empty()) {
            m_connection.awaitInput(deadline);
        }
    }
    return {conversion.outcome(), conversion.data()};
}

xcb_window_t X11SelectionReader::owner(xcb_atom_t selection)
{
    if (!m_connection.isValid()) {
        return XCB_WINDOW_NONE;
    }
    const auto answer = m_connection.reply(xcb_get_selection_owner_reply,
                                           xcb_get_selection_owner(m_connection.connection(), selection));
    return answer ? answer->owner : xcb_window_t{XCB_WINDOW_NONE};
}

} // namespace orvesa
