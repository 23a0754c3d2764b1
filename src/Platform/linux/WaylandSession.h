#pragma once

// Whether this process lives in a Wayland session, and what follows from it before there is an application object.
// Main thread.

namespace orvesa::WaylandSession {

/// Whether there is a Wayland display, with an X server inside it or without.
[[nodiscard]] bool isRunning();

/// Has Qt use the X server inside the session while this object lives, unless the user named a platform: a window there
/// can be put beside the pointer and kept above others, which Wayland lets no program do. For the time in which the
/// application object is made; programs that are started later do not inherit it.
class PreferredPlatform final {
public:
    PreferredPlatform();
    ~PreferredPlatform();
    PreferredPlatform(const PreferredPlatform &) = delete;
    PreferredPlatform &operator=(const PreferredPlatform &) = delete;

private:
    bool m_isSet;
};

} // namespace orvesa::WaylandSession
