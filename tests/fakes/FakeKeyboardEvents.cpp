#include "fakes/FakeKeyboardEvents.h"

#include <algorithm>
#include <utility>

namespace orvesa {

quint32 FakeKeyboardEvents::modifierFlags()
{
    ++m_questions;
    return m_held;
}

bool FakeKeyboardEvents::post(quint16 keyCode, KeyTransition transition, quint32 flags)
{
    if (std::ranges::find(m_refused, transition) != m_refused.end()) {
        return false;
    }
    const Event event{keyCode, transition, flags};
    m_posted.push_back(event);
    if (m_postHandler) {
        m_postHandler(event);
    }
    return true;
}

void FakeKeyboardEvents::setPostHandler(std::function<void(const Event &)> handler)
{
    m_postHandler = std::move(handler);
}

} // namespace orvesa
