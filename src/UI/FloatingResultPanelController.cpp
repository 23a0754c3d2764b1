#include "UI/FloatingResultPanelController.h"

#include "Core/SettingsStore.h"
#include "Platform/MouseMonitorPort.h"
#include "UI/FloatingResultPanel.h"
#include "UI/FloatingResultView.h"
#include "UI/PanelPlacement.h"
#include "UI/ResultMetrics.h"

#include <QApplication>
#include <QCursor>
#include <QScreen>

namespace orvesa {

namespace {

PanelPlacement::Screen geometry(const QScreen &screen)
{
    return {screen.geometry(), screen.availableGeometry()};
}

PanelPlacement::Screens connectedScreens()
{
    PanelPlacement::Screens screens;
    const QList<QScreen *> all = QGuiApplication::screens();
    for (const QScreen *screen : all) {
        if (screen == QGuiApplication::primaryScreen()) {
            screens.main = screens.all.size();
        }
        screens.all.push_back(geometry(*screen));
    }
    return screens;
}

int visibleScreenHeight()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->availableGeometry().height() : ResultMetrics::fallbackScreenHeight;
}

} // namespace

FloatingResultPanelController::FloatingResultPanelController(const SettingsStore &settings,
                                                             PanelWindowPort &panelWindow,
                                                             MouseMonitorPort &mouseMonitor)
    : m_settings(settings), m_panelWindow(panelWindow), m_mouseMonitor(mouseMonitor)
{
    m_viewModel.onClose = [this] { hide(); };
    connect(&m_viewModel, &FloatingResultViewModel::changed, this, &FloatingResultPanelController::scheduleResize);
    connect(&settings, &SettingsStore::themeChanged, this, &FloatingResultPanelController::scheduleResize);
    connect(&settings, &SettingsStore::appLanguageChanged, this, &FloatingResultPanelController::scheduleResize);
}

FloatingResultPanelController::~FloatingResultPanelController()
{
    removeDismissMonitors();
}

FloatingResultPanel &FloatingResultPanelController::panel()
{
    if (!m_panel) {
        m_view = new FloatingResultView(m_viewModel, m_settings);
        m_panel = std::make_unique<FloatingResultPanel>(m_view, m_panelWindow, [this] { hide(); });
    }
    return *m_panel;
}

void FloatingResultPanelController::prepare()
{
    panel().prepare();
    if (const auto size = idealFrameSize()) {
        panel().resize(*size);
    }
    // Loads fonts, symbols and styles; nothing is mapped.
    panel().grab();
}

bool FloatingResultPanelController::isVisible() const
{
    return m_panel && m_panel->isVisible();
}

std::optional<QSize> FloatingResultPanelController::idealFrameSize()
{
    m_view->refresh(visibleScreenHeight());
    const QSize size = m_view->idealSize();
    if (size.width() > 1 && size.height() > 1) {
        return size;
    }
    return std::nullopt;
}

void FloatingResultPanelController::show(Position position)
{
    if (position == Position::keep && isVisible()) {
        panel().orderFrontRegardless();
        installDismissMonitors();
    } else {
        showNearMouse();
    }
}

void FloatingResultPanelController::showNearMouse()
{
    FloatingResultPanel &window = panel();
    const QSize size = idealFrameSize().value_or(window.size());
    const QPoint origin = PanelPlacement::nearPointer(QCursor::pos(), size, connectedScreens());
    window.setWindowTitle(m_viewModel.taskTitle());
    window.setAccessibleName(m_viewModel.taskTitle());
    window.orderFront(QRect(origin, size));
    installDismissMonitors();
}

void FloatingResultPanelController::hide()
{
    removeDismissMonitors();
    if (m_panel) {
        m_panel->hide();
    }
}

void FloatingResultPanelController::scheduleResize()
{
    // One answer sets several properties: the panel changes its size once.
    if (m_resizeScheduled) {
        return;
    }
    m_resizeScheduled = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_resizeScheduled = false;
            resizeToFitContent();
        },
        Qt::QueuedConnection);
}

void FloatingResultPanelController::resizeToFitContent()
{
    if (!isVisible()) {
        return;
    }
    const auto size = idealFrameSize();
    m_panel->setWindowTitle(m_viewModel.taskTitle());
    m_panel->setAccessibleName(m_viewModel.taskTitle());
    if (!size || *size == m_panel->size()) {
        return;
    }
    std::optional<PanelPlacement::Screen> screen;
    if (const QScreen *own = m_panel->screen()) {
        screen = geometry(*own);
    }
    m_panel->setGeometry(PanelPlacement::refitted(m_panel->geometry(), *size, screen));
}

void FloatingResultPanelController::installDismissMonitors()
{
    if (m_monitoring) {
        return;
    }
    m_monitoring = true;
    m_mouseMonitor.setMouseDownHandler([this](QPoint) {
        // Only scheduled: the click that arrives here may still be on its way to a window of ours.
        QMetaObject::invokeMethod(
            this, [this] { dismissIfOutside(); }, Qt::QueuedConnection);
    });
}

void FloatingResultPanelController::removeDismissMonitors()
{
    if (m_monitoring) {
        m_monitoring = false;
        m_mouseMonitor.setMouseDownHandler({});
    }
}

void FloatingResultPanelController::dismissIfOutside()
{
    const QPoint pointer = QCursor::pos();
    if (isVisible() && m_panel->frameGeometry().contains(pointer)) {
        return;
    }
    // Menus and pickers of ours are untitled windows: a click in them is no click elsewhere.
    const QWidget *ours = QApplication::topLevelAt(pointer);
    if (ours != nullptr && (ours->windowType() == Qt::Popup || ours->windowType() == Qt::ToolTip)) {
        return;
    }
    hide();
}

} // namespace orvesa
