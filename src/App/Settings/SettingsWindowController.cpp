#include "App/Settings/SettingsWindowController.h"

#include "App/Settings/SettingsView.h"
#include "Core/KeychainService.h"
#include "UI/WindowKeys.h"

#include <QMainWindow>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace orvesa {

SettingsWindowController::SettingsWindowController(const SettingsServices &services)
    : m_keyStatus(services.keychain), m_window(std::make_unique<QMainWindow>()),
      m_view(new SettingsView(services, m_keyStatus))
{
    m_window->setWindowTitle(u"Orvesa Translate Settings"_s);
    m_window->setAttribute(Qt::WA_QuitOnClose, false);
    m_window->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                             Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    m_window->setContextMenuPolicy(Qt::NoContextMenu);
    m_window->setCentralWidget(m_view);
    m_window->setFixedSize(m_view->size());
    const QRect available = m_window->screen()->availableGeometry();
    m_window->move(available.center() - m_window->rect().center());
    WindowKeys::add(*m_window, [this] { m_window->close(); });
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::showWindow()
{
    if (m_window->isMinimized()) {
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    }
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

} // namespace orvesa
