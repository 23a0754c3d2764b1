#pragma once

// A desktop with at most one application in front. Main thread.

#include "Platform/WorkspacePort.h"

#include <QList>

namespace orvesa {

class FakeWorkspace final : public WorkspacePort {
public:
    [[nodiscard]] std::optional<qint64> frontmostApplication() const override { return m_frontmost; }
    bool open(const QUrl &url) override;

    void setFrontmostApplication(std::optional<qint64> processIdentifier) { m_frontmost = processIdentifier; }
    /// Every later open() is noted and refused.
    void refuseToOpen() { m_acceptsAddresses = false; }
    [[nodiscard]] const QList<QUrl> &opened() const { return m_opened; }

private:
    std::optional<qint64> m_frontmost;
    QList<QUrl> m_opened;
    bool m_acceptsAddresses = true;
};

} // namespace orvesa
