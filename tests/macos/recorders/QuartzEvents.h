#pragma once

// The stand-in for Quartz event services. Main thread.

#include <CoreGraphics/CoreGraphics.h>

#include <vector>

namespace orvesa::recorders {

struct PostedKey {
    CGKeyCode keyCode = 0;
    bool isDown = false;
    CGEventFlags flags = 0;
};

struct QuartzEvents {
    enum class Creation { works, fails };

    CGEventFlags flags = 0; ///< of the session's keyboard
    Creation sources = Creation::works;
    Creation events = Creation::works;
    std::vector<PostedKey> posted; ///< since somebody took them
};

/// What the functions answer with; tests change it and reset it.
[[nodiscard]] QuartzEvents &quartzEvents();

} // namespace orvesa::recorders
