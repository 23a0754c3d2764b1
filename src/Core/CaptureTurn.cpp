#include "Core/CaptureTurn.h"

#include <utility>

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
    // Any number of jobs may give the turn back as soon as they get it, which must not pile up.
    m_isPassedOn = true;
    if (m_isPassing) {
        return;
    }
    m_isPassing = true;
    while (std::exchange(m_isPassedOn, false)) {
        if (m_waiting.empty()) {
            m_isTaken = false;
            break;
        }
        // The turn stays taken: it goes straight to the next.
        const std::coroutine_handle<> next = m_waiting.front();
        m_waiting.pop_front();
        next.resume();
    }
    m_isPassing = false;
}

} // namespace orvesa
