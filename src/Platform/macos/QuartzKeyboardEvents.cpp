#include "Platform/macos/QuartzKeyboardEvents.h"

#include "Platform/macos/CFOwner.h"

#include <CoreGraphics/CoreGraphics.h>

namespace orvesa {

quint32 QuartzKeyboardEvents::modifierFlags()
{
    const CGEventFlags flags = CGEventSourceFlagsState(kCGEventSourceStateCombinedSessionState);
    return static_cast<quint32>(flags & KeyboardFlags::all);
}

bool QuartzKeyboardEvents::post(quint16 keyCode, KeyTransition transition, quint32 flags)
{
    const CFOwner source(CGEventSourceCreate(kCGEventSourceStateCombinedSessionState));
    if (!source) {
        return false;
    }
    const CFOwner event(CGEventCreateKeyboardEvent(source.get(), keyCode, transition == KeyTransition::down));
    if (!event) {
        return false;
    }
    // In place of the flags that the event has from the keys that are held.
    CGEventSetFlags(event.get(), static_cast<CGEventFlags>(flags));
    CGEventPost(kCGHIDEventTap, event.get());
    return true;
}

} // namespace orvesa
