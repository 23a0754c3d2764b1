#include "App/Settings/SettingsWindowController.h"

#include "App/Settings/SettingsView.h"
#include "Core/KeychainService.h"

#include <QCoreApplication>
#include <QMainWindow>
#include <QScreen>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

/// Control with the key, and whatever the desktop uses for the same. Keys for editing are the controls' own.
QShortcut *windowKeys(QWidget &window, Qt::Key key, QKeySequence::StandardKey standard)
{
    QList<QKeySequence> keys = QKeySequence::keyBindings(standard);
    const QKeySequence usual(QKeyCombination(Qt::ControlModifier, key));
    if (!keys.contains(usual)) {
        keys.prepend(usual);
    }
    auto *const shortcut = new QShortcut(&window);
    shortcut->setKeys(keys);
    return shortcut;
}

} // namespace

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
    QObject::connect(windowKeys(*m_window, Qt::Key_W, QKeySequence::Close), &QShortcut::activated, m_window.get(),
                     &QWidget::close);
    QObject::connect(windowKeys(*m_window, Qt::Key_Q, QKeySequence::Quit), &QShortcut::activated, m_window.get(),
                     [] { QCoreApplication::quit(); });
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
