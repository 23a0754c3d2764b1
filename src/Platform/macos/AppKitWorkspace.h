#pragma once

// The frontmost application, and opening addresses. Main thread.

#include "Platform/WorkspacePort.h"

namespace orvesa {

class AppKitWorkspace final : public WorkspacePort {
public:
    [[nodiscard]] std::optional<qint64> frontmostApplication() const override;
    bool open(const QUrl &url) override;
};

} // namespace orvesa
