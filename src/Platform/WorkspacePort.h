#pragma once

// The running applications and the desktop's way of opening an address. Main thread.

#include <QUrl>

#include <optional>

namespace orvesa {

class WorkspacePort {
public:
    virtual ~WorkspacePort() = default;

    /// Process id of the application whose window has the keyboard; absent when there is none.
    [[nodiscard]] virtual std::optional<qint64> frontmostApplication() const = 0;
    /// Whether the desktop accepted the address.
    virtual bool open(const QUrl &url) = 0;
};

} // namespace orvesa
