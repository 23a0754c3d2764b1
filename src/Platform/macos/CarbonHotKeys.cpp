#include "Platform/macos/CarbonHotKeys.h"

#include <iterator>
#include <utility>

namespace orvesa {

CarbonHotKeys::~CarbonHotKeys()
{
    removeHandler();
}

qint32 CarbonHotKeys::installHandler(Handler handler)
{
    m_handler = std::move(handler);
    if (m_handlerReference != nullptr) {
        return HotKeyStatus::noErr;
    }
    const EventTypeSpec eventTypes[] = {{kEventClassKeyboard, kEventHotKeyPressed}};
    const OSStatus status = InstallEventHandler(GetApplicationEventTarget(), &CarbonHotKeys::handleEvent,
                                                std::size(eventTypes), eventTypes, this, &m_handlerReference);
    if (status != HotKeyStatus::noErr) {
        m_handler = {};
    }
    return status;
}

void CarbonHotKeys::removeHandler()
{
    if (m_handlerReference != nullptr) {
        RemoveEventHandler(std::exchange(m_handlerReference, nullptr));
    }
    m_handler = {};
}

HotKeyRegistration CarbonHotKeys::registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id)
{
    const EventHotKeyID hotKeyID = {id.signature, id.id};
    EventHotKeyRef reference = nullptr;
    const OSStatus status =
        RegisterEventHotKey(keyCode, modifiers, hotKeyID, GetApplicationEventTarget(), 0, &reference);
    return {status, reinterpret_cast<HotKeyRef>(reference)};
}

qint32 CarbonHotKeys::unregisterHotKey(HotKeyRef reference)
{
    return UnregisterEventHotKey(reinterpret_cast<EventHotKeyRef>(reference));
}

OSStatus CarbonHotKeys::handleEvent(EventHandlerCallRef next, EventRef event, void *userData)
{
    Q_UNUSED(next)
    if (userData == nullptr) {
        return HotKeyStatus::eventNotHandled;
    }
    EventHotKeyID id = {};
    const OSStatus status =
        GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr, sizeof id, nullptr, &id);
    if (status != HotKeyStatus::noErr) {
        return status;
    }
    const Handler handler = static_cast<const CarbonHotKeys *>(userData)->m_handler; // it may remove itself
    return handler ? handler({id.signature, id.id}) : HotKeyStatus::eventNotHandled;
}

} // namespace orvesa
