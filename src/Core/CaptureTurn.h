#pragma once

// Lets jobs that put the pasteboard aside do so one after another, in the order in which they came. Two at once would
// put back each other's contents.
//
// Main thread. Must outlive the jobs that wait for it.

#include <coroutine>
#include <deque>

namespace orvesa {

class CaptureTurn final {
public:
    /// Whoever has it has the turn; the next one comes when it is destroyed.
    class Holder final {
    public:
        explicit Holder(CaptureTurn &turn) : m_turn(&turn) {}
        ~Holder();
        Holder(const Holder &) = delete;
        Holder &operator=(const Holder &) = delete;

    private:
        CaptureTurn *m_turn;
    };

    CaptureTurn() = default;
    CaptureTurn(const CaptureTurn &) = delete;
    CaptureTurn &operator=(const CaptureTurn &) = delete;

    /// `co_await turn.next();` and then a Holder.
    class Waiting final {
    public:
        explicit Waiting(CaptureTurn &turn) : m_turn(&turn) {}
        [[nodiscard]] bool await_ready() const;
        void await_suspend(std::coroutine_handle<> waiting);
        void await_resume() const {}

    private:
        CaptureTurn *m_turn;
    };
    [[nodiscard]] Waiting next() { return Waiting(*this); }
    [[nodiscard]] bool isTaken() const { return m_isTaken; }

private:
    void pass();

    bool m_isTaken = false;
    bool m_isPassing = false;  ///< pass() is at work
    bool m_isPassedOn = false; ///< whoever got the turn from it has given it back already
    std::deque<std::coroutine_handle<>> m_waiting;
};

} // namespace orvesa
