#include "fakes/FakeKeyMonitor.h"

#include <utility>

namespace orvesa {

KeyMonitorPort::Token FakeKeyMonitor::addMonitor(Handler handler)
{
    m_handler = std::move(handler);
    m_current = static_cast<Token>(++m_installs);
    return m_current;
}

void FakeKeyMonitor::removeMonitor(Token token)
{
    if (token == m_current) {
        m_current = 0;
        m_handler = nullptr;
    }
}

bool FakeKeyMonitor::press(quint32 keyCode, quint32 modifierFlags, const QString &characters)
{
    const Handler handler = m_handler; // it may remove itself
    if (!handler) {
        return false;
    }
    handler({.keyCode = keyCode, .modifierFlags = modifierFlags, .characters = characters});
    return true;
}

} // namespace orvesa
