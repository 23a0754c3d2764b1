#include "macos/recorders/QuartzEvents.h"

#include "macos/recorders/Object.h"
#include "macos/recorders/RecordedCalls.h"

#include <sstream>

namespace orvesa::recorders {

namespace {

class EventObject final : public Object {
public:
    EventObject(CGKeyCode key, bool down, CGEventFlags heldFlags)
        : Object(Kind::event), keyCode(key), isDown(down), flags(heldFlags)
    {
    }

    const CGKeyCode keyCode;
    const bool isDown;
    CGEventFlags flags;
};

EventObject *event(CGEventRef reference, const char *use)
{
    return static_cast<EventObject *>(checked(reference, Kind::event, use));
}

} // namespace

QuartzEvents &quartzEvents()
{
    static QuartzEvents instance;
    return instance;
}

} // namespace orvesa::recorders

using namespace orvesa::recorders;

extern "C" {

CGEventFlags CGEventSourceFlagsState(CGEventSourceStateID stateID)
{
    note("CGEventSourceFlagsState " + std::to_string(stateID));
    return quartzEvents().flags;
}

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID)
{
    note("CGEventSourceCreate " + std::to_string(stateID));
    const bool works = quartzEvents().sources == QuartzEvents::Creation::works;
    return works ? referenceTo<CGEventSourceRef>(new Object(Kind::eventSource)) : nullptr;
}

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode virtualKey, bool keyDown)
{
    (void)checked(source, Kind::eventSource, "CGEventCreateKeyboardEvent");
    note("CGEventCreateKeyboardEvent " + std::to_string(virtualKey) + (keyDown ? " down" : " up"));
    const bool works = quartzEvents().events == QuartzEvents::Creation::works;
    // As on macOS, the event begins with the flags of the keys that are held.
    return works ? referenceTo<CGEventRef>(new EventObject(virtualKey, keyDown, quartzEvents().flags)) : nullptr;
}

void CGEventSetFlags(CGEventRef reference, CGEventFlags flags)
{
    if (EventObject *const object = event(reference, "CGEventSetFlags")) {
        object->flags = flags;
    }
}

void CGEventPost(CGEventTapLocation tap, CGEventRef reference)
{
    if (const EventObject *const object = event(reference, "CGEventPost")) {
        std::ostringstream text;
        text << "CGEventPost tap " << tap << " key " << object->keyCode << (object->isDown ? " down" : " up")
             << " flags 0x" << std::hex << object->flags;
        note(text.str());
        quartzEvents().posted.push_back({object->keyCode, object->isDown, object->flags});
    }
}

} // extern "C"
