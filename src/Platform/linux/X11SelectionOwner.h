#pragma once

// Owns the CLIPBOARD selection on behalf of the main thread.
//
// Main thread; the serving is done in a thread of its own, started at the first use. Any program may ask for the
// contents at any time, this one's own windows included, whose toolkit then waits for the answer within the main
// thread.

#include "Platform/linux/X11SelectionContents.h"

#include <QThread>

#include <memory>

namespace orvesa {

class X11SelectionServer;

class X11SelectionOwner final {
public:
    X11SelectionOwner();
    /// Leaves the contents to a clipboard manager first; waits for it for a second at most.
    ~X11SelectionOwner();
    Q_DISABLE_COPY_MOVE(X11SelectionOwner)

    /// Takes the selection over. False when that failed. Waits for the X server for 250 ms at most; one that is slower
    /// gives the selection over when it goes on.
    bool own(X11SelectionContents contents);

private:
    class Thread;
    std::unique_ptr<Thread> m_thread;
};

} // namespace orvesa
