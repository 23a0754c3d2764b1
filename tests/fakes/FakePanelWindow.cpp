#include "fakes/FakePanelWindow.h"

namespace orvesa {

void FakePanelWindow::makePanel(QWindow &window)
{
    m_panels.push_back(&window);
}

QRect FakePanelWindow::visibleFrame(const QScreen &, QRect available) const
{
    return available.adjusted(0, 0, 0, -m_dockHeight);
}

void FakePanelWindow::announce(QObject &, const QString &text)
{
    m_announcements.append(text);
}

} // namespace orvesa
