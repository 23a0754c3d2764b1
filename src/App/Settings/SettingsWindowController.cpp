#include "App/Settings/SettingsWindowController.h"

#include "App/Settings/SettingsView.h"
#include "Core/KeychainService.h"

#include <QScreen>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace orvesa {

SettingsWindowController::SettingsWindowController(const SettingsServices &services)
    : m_keyStatus(services.keychain), m_view(std::make_unique<SettingsView>(services, m_keyStatus))
{
    m_view->setWindowTitle(u"Orvesa Translate Settings"_s);
    m_view->setAttribute(Qt::WA_QuitOnClose, false);
    m_view->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    const QRect available = m_view->screen()->availableGeometry();
    m_view->move(available.center() - m_view->rect().center());
    const auto *close = new QShortcut(QKeySequence::Close, m_view.get());
    QObject::connect(close, &QShortcut::activated, m_view.get(), &QWidget::close);
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::showWindow()
{
    if (m_view->isMinimized()) {
        m_view->setWindowState(m_view->windowState() & ~Qt::WindowMinimized);
    }
    m_view->show();
    m_view->raise();
    m_view->activateWindow();
}

} // namespace orvesa
