#pragma once

// Whether the desktop has a place for status items. Main thread.

#include <functional>

namespace orvesa {

class TrayPort {
public:
    virtual ~TrayPort() = default;

    [[nodiscard]] virtual bool isAvailable() = 0;
    /// Calls the handler once, from the event loop, when there is a place. Nothing wakes the program before that.
    virtual void whenAvailable(std::function<void()> handler) = 0;
};

} // namespace orvesa
