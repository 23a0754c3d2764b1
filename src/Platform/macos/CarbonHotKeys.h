#pragma once

// System-wide hot keys through the Carbon Event Manager.
//
// Main thread; the system calls the handler on it. Carbon's references are neither retained nor counted: each is given
// back by the call that names it.

#include "Platform/HotKeyPort.h"

#include <Carbon/Carbon.h>

namespace orvesa {

class CarbonHotKeys final : public HotKeyPort {
public:
    CarbonHotKeys() = default;
    ~CarbonHotKeys() override;
    Q_DISABLE_COPY_MOVE(CarbonHotKeys)

    [[nodiscard]] qint32 installHandler(Handler handler) override;
    void removeHandler() override;
    [[nodiscard]] HotKeyRegistration registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id) override;
    qint32 unregisterHotKey(HotKeyRef reference) override;

private:
    static OSStatus handleEvent(EventHandlerCallRef next, EventRef event, void *userData);

    Handler m_handler;
    EventHandlerRef m_handlerReference = nullptr;
};

} // namespace orvesa
