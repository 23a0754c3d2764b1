#pragma once

// A door at which coroutines wait until a test opens it, so that a test decides when an asynchronous call goes on.
// Main thread. Whoever still waits when the gate is destroyed is never resumed.

#include <coroutine>
#include <vector>

namespace orvesa {

class Gate final {
public:
    class Passage final {
    public:
        explicit Passage(Gate &gate) : m_gate(gate) {}

        [[nodiscard]] bool await_ready() const noexcept { return m_gate.m_open; }
        void await_suspend(std::coroutine_handle<> waiting) { m_gate.m_waiting.push_back(waiting); }
        void await_resume() const noexcept {}

    private:
        Gate &m_gate;
    };

    /// Awaitable; passes at once while the gate is open.
    [[nodiscard]] Passage passed() { return Passage(*this); }

    void close();
    /// Resumes everybody who waits, in the order of their coming, before it returns.
    void open();
    [[nodiscard]] std::size_t waiting() const { return m_waiting.size(); }

private:
    bool m_open = true;
    std::vector<std::coroutine_handle<>> m_waiting;
};

} // namespace orvesa
