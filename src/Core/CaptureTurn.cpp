#include "Core/CaptureTurn.h"

namespace orvesa {

CaptureTurn::Holder::~Holder()
{
    m_turn->pass();
}

bool CaptureTurn::Waiting::await_ready() const
{
    if (m_turn->m_isTaken) {
        return false;
    }
    m_turn->m_isTaken = true;
    return true;
}

void CaptureTurn::Waiting::await_suspend(std::coroutine_handle<> waiting)
{
    m_turn->m_waiting.push_back(waiting);
}

void CaptureTurn::pass()
{
    if (m_waiting.empty()) {
        m_isTaken = false;
        return;
    }
    // The turn stays taken: it goes straight to the next.
    const std::coroutine_handle<> next = m_waiting.front();
    m_waiting.pop_front();
    next.resume();
}

} // namespace orvesa
