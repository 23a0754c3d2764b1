#pragma once

// The pipe through which an X server that picks its display itself (-displayfd) says which one that is, once it accepts
// clients.
//
// Main thread.

#include "desktop/Process.h"

#include <QString>

namespace orvesa::desktop {

class DisplayPipe final {
public:
    /// Throws DesktopError when there are no descriptors left.
    DisplayPipe();
    ~DisplayPipe();
    DisplayPipe(const DisplayPipe &) = delete;
    DisplayPipe &operator=(const DisplayPipe &) = delete;

    /// For the server, which is to inherit it.
    [[nodiscard]] int writeEnd() const { return m_writeEnd; }
    /// ":N". Throws DesktopError when the server ends instead of saying it.
    [[nodiscard]] QString awaitDisplay(const Process &server);

private:
    void closeWriteEnd();

    int m_readEnd = -1;
    int m_writeEnd = -1;
};

} // namespace orvesa::desktop
