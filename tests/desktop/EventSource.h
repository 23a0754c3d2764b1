#pragma once

// Something whose events can be read ahead of the event loop, as the X connection's are while it waits for a reply.
//
// Main thread. While it lives, every wait asks it before blocking, so that no event is slept over.

namespace orvesa::desktop {

class EventSource {
public:
    EventSource(const EventSource &) = delete;
    EventSource &operator=(const EventSource &) = delete;
    virtual ~EventSource();

    /// Handles what has been read already; true when there was anything.
    virtual bool takeQueuedEvents() = 0;

protected:
    EventSource();
};

} // namespace orvesa::desktop
