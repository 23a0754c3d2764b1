#include "fakes/FakePanelWindow.h"

namespace orvesa {

FakePanelWindow::FakePanelWindow(Compositing compositing) : m_compositing(compositing) {}

void FakePanelWindow::makePanel(QWindow &window)
{
    m_panels.push_back(&window);
}

} // namespace orvesa
