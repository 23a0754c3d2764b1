#include "fakes/Gate.h"

#include <utility>

namespace orvesa {

void Gate::close()
{
    m_open = false;
}

void Gate::open()
{
    m_open = true;
    for (const std::coroutine_handle<> waiting : std::exchange(m_waiting, {})) {
        waiting.resume();
    }
}

} // namespace orvesa
