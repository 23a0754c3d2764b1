#pragma once

// The stand-in for Quartz event services. Main thread.

#include <CoreGraphics/CoreGraphics.h>

namespace orvesa::recorders {

struct QuartzEvents {
    enum class Creation { works, fails };

    CGEventFlags flags = 0; ///< of the session's keyboard
    Creation sources = Creation::works;
    Creation events = Creation::works;
};

/// What the functions answer with; tests change it and reset it.
[[nodiscard]] QuartzEvents &quartzEvents();

} // namespace orvesa::recorders
