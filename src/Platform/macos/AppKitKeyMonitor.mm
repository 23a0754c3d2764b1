#include "Platform/macos/AppKitKeyMonitor.h"

#import <AppKit/AppKit.h>

#include <set>
#include <utility>

namespace orvesa {

/// The system's token, counted by the compiler, and the keys whose presses were taken.
struct AppKitKeyMonitor::Monitor {
    id token = nil;
    std::set<quint32> heldKeys;
};

namespace {

constexpr NSEventModifierFlags reportedFlags = NSEventModifierFlagCapsLock | NSEventModifierFlagShift |
                                               NSEventModifierFlagControl | NSEventModifierFlagOption |
                                               NSEventModifierFlagCommand;

MonitoredKeyPress pressOf(NSEvent *event)
{
    return {.keyCode = event.keyCode,
            .modifierFlags = static_cast<quint32>(event.modifierFlags & reportedFlags),
            .characters = QString::fromNSString(event.charactersIgnoringModifiers)};
}

} // namespace

AppKitKeyMonitor::AppKitKeyMonitor() : m_monitor(std::make_unique<Monitor>()) {}

AppKitKeyMonitor::~AppKitKeyMonitor()
{
    stopMonitoring();
}

KeyMonitorPort::Token AppKitKeyMonitor::addMonitor(Handler handler)
{
    m_handler = std::move(handler);
    m_current = ++m_lastToken;
    if (m_monitor->token == nil) {
        m_monitor->token = [NSEvent
            addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown | NSEventMaskKeyUp
                                         handler:^NSEvent *(NSEvent *event) {
                                             const bool isDown = event.type == NSEventTypeKeyDown;
                                             return takes(pressOf(event), isDown, isDown && event.ARepeat) ? nil
                                                                                                           : event;
                                         }];
    }
    return m_current;
}

void AppKitKeyMonitor::removeMonitor(Token token)
{
    if (token == 0 || token != m_current) {
        return;
    }
    m_current = 0;
    m_handler = {};
    if (m_monitor->heldKeys.empty()) {
        stopMonitoring();
    }
}

bool AppKitKeyMonitor::takes(const MonitoredKeyPress &press, bool isDown, bool isRepeat)
{
    if (!isDown) {
        const bool isOurs = m_monitor->heldKeys.erase(press.keyCode) != 0;
        if (m_current == 0 && m_monitor->heldKeys.empty()) {
            stopMonitoring();
        }
        return isOurs;
    }
    if (m_current == 0 || isRepeat) {
        return m_current != 0 || m_monitor->heldKeys.contains(press.keyCode);
    }
    m_monitor->heldKeys.insert(press.keyCode);
    const Handler handler = m_handler; // it may remove itself
    handler(press);
    return true;
}

void AppKitKeyMonitor::stopMonitoring()
{
    if (m_monitor->token != nil) {
        [NSEvent removeMonitor:m_monitor->token];
        m_monitor->token = nil;
    }
    m_monitor->heldKeys.clear();
}

} // namespace orvesa
