#include "UI/FloatingResultPanelController.h"

#include "Core/SettingsStore.h"
#include "Models/AITask.h"
#include "Platform/MouseMonitorPort.h"
#include "Platform/PanelWindowPort.h"
#include "UI/FloatingResultPanel.h"
#include "UI/FloatingResultView.h"
#include "UI/ResultMetrics.h"

#include <QApplication>
#include <QCursor>
#include <QPointer>
#include <QScreen>
#include <QTimerEvent>

#include <chrono>
#include <utility>

namespace orvesa {

namespace {

/// How long a dock may take to open the status menu after the click on its icon.
constexpr std::chrono::milliseconds menuGrace(300);
/// The same press arrives twice, here and at a popup of ours that it may close; neither is the first for sure.
constexpr qint64 samePressMilliseconds = 100;

/// Windows without a title bar, such as menus, pickers' lists and the tray's icon, are no other place to click.
bool isUntitledWindowOfOurs(QPoint place)
{
    const QWidget *ours = QApplication::topLevelAt(place);
    if (ours == nullptr) {
        return false;
    }
    const Qt::WindowFlags flags = ours->windowFlags();
    return ours->windowType() == Qt::Popup || ours->windowType() == Qt::ToolTip ||
           flags.testAnyFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
}

} // namespace

FloatingResultPanelController::FloatingResultPanelController(const SettingsStore &settings,
                                                             PanelWindowPort &panelWindow,
                                                             MouseMonitorPort &mouseMonitor)
    : m_settings(settings), m_panelWindow(panelWindow), m_mouseMonitor(mouseMonitor), m_announcer(panelWindow)
{
    m_viewModel.onClose = [this] { hide(); };
    connect(&m_viewModel, &FloatingResultViewModel::changed, this, &FloatingResultPanelController::scheduleResize);
    connect(&settings, &SettingsStore::themeChanged, this, &FloatingResultPanelController::scheduleResize);
    connect(&settings, &SettingsStore::appLanguageChanged, this, &FloatingResultPanelController::scheduleResize);
    followScreens();
}

FloatingResultPanelController::~FloatingResultPanelController()
{
    removeDismissMonitors();
}

/// A panel that is shown stays inside its screen when that one, or its docks, change, and moves when it goes.
void FloatingResultPanelController::followScreens()
{
    const auto changed = [this] {
        m_screensChanged = true;
        scheduleResize();
    };
    const auto follow = [this, changed](const QScreen *screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, changed);
        connect(screen, &QScreen::geometryChanged, this, changed);
        changed();
    };
    for (const QScreen *screen : QGuiApplication::screens()) {
        follow(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, follow);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, changed);
}

PanelPlacement::Screen FloatingResultPanelController::geometry(const QScreen &screen) const
{
    return {screen.geometry(), m_panelWindow.visibleFrame(screen, screen.availableGeometry())};
}

PanelPlacement::Screens FloatingResultPanelController::connectedScreens() const
{
    PanelPlacement::Screens screens;
    for (const QScreen *screen : QGuiApplication::screens()) {
        if (screen == QGuiApplication::primaryScreen()) {
            screens.main = screens.all.size();
        }
        screens.all.push_back(geometry(*screen));
    }
    return screens;
}

int FloatingResultPanelController::visibleScreenHeight() const
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? geometry(*screen).visibleFrame.height() : ResultMetrics::fallbackScreenHeight;
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
    if (!isVisible()) {
        rehearse();
        installDismissMonitors(); // asks the desktop what it can do
        removeDismissMonitors();
    }
}

/// Lays the panel out and paints it as a task is going to begin, for fonts, symbols and styles are loaded then. Nothing
/// is mapped.
void FloatingResultPanelController::rehearse()
{
    if (!m_viewModel.taskTitle().isEmpty()) {
        return; // a task was faster
    }
    const TargetLanguage language = m_settings.targetLanguage();
    m_viewModel.setTaskTitle(displayName(TranslateTask{rawValue(language)}));
    // The title names a language and so has letters as texts have them.
    m_viewModel.setSourceText(m_viewModel.taskTitle());
    m_viewModel.setTranslationLanguage(language);
    if (const auto size = idealFrameSize()) {
        panel().resize(*size);
    }
    panel().grab();
    m_viewModel.setTaskTitle(QString());
    m_viewModel.setSourceText(QString());
    m_viewModel.setTranslationLanguage(std::nullopt);
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

QCoro::Task<void> FloatingResultPanelController::locatePointer()
{
    const QPointer<FloatingResultPanelController> self(this);
    const std::optional<QPoint> pointer = co_await m_panelWindow.pointer();
    if (self) {
        self->m_pointer = pointer;
    }
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
    const std::optional<QPoint> pointer = std::exchange(m_pointer, std::nullopt);
    const QPoint origin = PanelPlacement::nearPointer(pointer ? *pointer : QCursor::pos(), size, connectedScreens());
    m_screensChanged = false;
    nameWindow();
    m_announcer.forget();
    m_statusMenu = StatusMenu::closed;
    window.orderFront(QRect(origin, size));
    installDismissMonitors();
}

void FloatingResultPanelController::nameWindow()
{
    if (m_panel->accessibleName() != m_viewModel.taskTitle()) {
        m_panel->setWindowTitle(m_viewModel.taskTitle());
        m_panel->setAccessibleName(m_viewModel.taskTitle());
    }
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
    nameWindow();
    m_announcer.announce(m_viewModel, *m_panel);
    if (!size) {
        return;
    }
    const QRect current = m_panel->frame();
    // The user may have dragged it half outside the screen; only a new size, or other screens, move it.
    if (std::exchange(m_screensChanged, false) || PanelPlacement::needsNewFrame(current.size(), *size)) {
        // Not the one that Qt takes it for, which it may have left just now.
        const auto screen = PanelPlacement::ownScreen(current, connectedScreens());
        m_panel->setFrame(PanelPlacement::refitted(current, *size, screen));
    }
}

void FloatingResultPanelController::installDismissMonitors()
{
    if (m_monitoring) {
        return;
    }
    m_monitoring = true;
    qApp->installEventFilter(this);
    m_mouseMonitor.setMouseDownHandler([this](QPoint) { noteMouseDown(); });
}

void FloatingResultPanelController::removeDismissMonitors()
{
    m_menuGrace.stop();
    if (m_monitoring) {
        m_monitoring = false;
        qApp->removeEventFilter(this);
        m_mouseMonitor.setMouseDownHandler({});
    }
}

void FloatingResultPanelController::setStatusMenu(StatusMenu menu)
{
    m_statusMenu = menu;
    m_menuGrace.stop();
}

bool FloatingResultPanelController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && QApplication::activePopupWidget() != nullptr) {
        m_popupPressed.start();
    }
    if (event->type() == QEvent::WindowDeactivate && watched == m_panel.get() && !m_mouseMonitor.seesEveryPress()) {
        // The press that took the keyboard away may be one that nobody tells of. Only scheduled: the keyboard may go to
        // a window of ours.
        QMetaObject::invokeMethod(
            this, [this] { dismissIfInactive(); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void FloatingResultPanelController::noteMouseDown()
{
    const bool isMenus = m_statusMenu == StatusMenu::open || QApplication::activePopupWidget() != nullptr ||
                         (m_popupPressed.isValid() && m_popupPressed.elapsed() < samePressMilliseconds);
    if (!isMenus) {
        // Only scheduled: the click that arrives here may still be on its way to a window of ours.
        QMetaObject::invokeMethod(
            this, [this] { dismissIfOutside(); }, Qt::QueuedConnection);
    }
}

void FloatingResultPanelController::dismissIfOutside()
{
    const QPoint pointer = QCursor::pos();
    if ((isVisible() && m_panel->frame().contains(pointer)) || isUntitledWindowOfOurs(pointer)) {
        return;
    }
    const QScreen *screen = QGuiApplication::screenAt(pointer);
    if (screen != nullptr && !geometry(*screen).visibleFrame.contains(pointer)) {
        // On a dock, where the status item may be: its menu counts as ours, and is on its way.
        m_menuGrace.start(static_cast<int>(menuGrace.count()), this);
        return;
    }
    hide();
}

void FloatingResultPanelController::dismissIfInactive()
{
    if (m_monitoring && QApplication::activeWindow() == nullptr && QApplication::activePopupWidget() == nullptr &&
        m_statusMenu == StatusMenu::closed) {
        hide();
    }
}

void FloatingResultPanelController::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_menuGrace.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    m_menuGrace.stop();
    if (QApplication::activePopupWidget() == nullptr) {
        hide();
    }
}

} // namespace orvesa
