#pragma once

// Notes which windows were made panels. Main thread.

#include "Platform/PanelWindowPort.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace orvesa {

class FakePanelWindow final : public PanelWindowPort {
public:
    void makePanel(QWindow &window) override;
    [[nodiscard]] QRect visibleFrame(const QScreen &screen, QRect available) const override;
    [[nodiscard]] bool isCompositing() const override { return true; }

    [[nodiscard]] bool reducesMotion() const override { return m_reducesMotion; }
    void setReducesMotion(bool reduces) { m_reducesMotion = reduces; }

    [[nodiscard]] QCoro::Task<std::optional<QPoint>> pointer() override { co_return m_pointer; }
    /// What this desktop says of the pointer; without it, it leaves that to Qt.
    void setPointer(std::optional<QPoint> pointer) { m_pointer = pointer; }

    void announce(QObject &window, const QString &text) override;
    [[nodiscard]] const QStringList &announcements() const { return m_announcements; }
    /// What docks take at the bottom of every screen.
    void setDockHeight(int height) { m_dockHeight = height; }
    /// In the order of the calls; a window may be in it more than once. May have been destroyed since.
    [[nodiscard]] const std::vector<const QWindow *> &panels() const { return m_panels; }

private:
    int m_dockHeight = 0;
    bool m_reducesMotion = false;
    std::optional<QPoint> m_pointer;
    QStringList m_announcements;
    std::vector<const QWindow *> m_panels;
};

} // namespace orvesa
