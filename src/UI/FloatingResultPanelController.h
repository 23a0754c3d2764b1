#pragma once

// Owns the result panel and its view model: places the panel at the pointer, keeps its size fitted to its content and
// hides it when the user clicks elsewhere. Main thread only; settings and ports must outlive it.

#include "UI/FloatingResultViewModel.h"
#include "UI/PanelAnnouncer.h"
#include "UI/PanelPlacement.h"

#include <QCoroTask>

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QPoint>

#include <memory>
#include <optional>

class QScreen;

namespace orvesa {

class FloatingResultPanel;
class FloatingResultView;
class MouseMonitorPort;
class PanelWindowPort;
class SettingsStore;

class FloatingResultPanelController final : public QObject {
    Q_OBJECT

public:
    /// Whether a visible panel stays where the user may have moved it.
    enum class Position { nearMouse, keep };
    enum class StatusMenu { closed, open };

    FloatingResultPanelController(const SettingsStore &settings, PanelWindowPort &panelWindow,
                                  MouseMonitorPort &mouseMonitor);
    ~FloatingResultPanelController() override;

    [[nodiscard]] FloatingResultViewModel &viewModel() { return m_viewModel; }

    /// Asks the desktop where the pointer is, where Qt may not know it, for the next showing. To be awaited before it.
    [[nodiscard]] QCoro::Task<void> locatePointer();
    void show(Position position);
    void hide();
    [[nodiscard]] bool isVisible() const;

    /// The status item's menu may be another program's window: clicks while it is open do not dismiss the panel.
    void setStatusMenu(StatusMenu menu);

    /// Builds and paints the hidden panel as the first tasks are going to show it, so that they find it ready.
    void prepare();

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    [[nodiscard]] FloatingResultPanel &panel();
    [[nodiscard]] PanelPlacement::Screen geometry(const QScreen &screen) const;
    [[nodiscard]] PanelPlacement::Screens connectedScreens() const;
    [[nodiscard]] int visibleScreenHeight() const;
    void followScreens();
    void rehearse();
    void nameWindow();
    [[nodiscard]] std::optional<QSize> idealFrameSize();
    void showNearMouse();
    void scheduleResize();
    void resizeToFitContent();
    void installDismissMonitors();
    void removeDismissMonitors();
    void noteMouseDown();
    void dismissIfOutside();
    void dismissIfInactive();

    const SettingsStore &m_settings;
    PanelWindowPort &m_panelWindow;
    MouseMonitorPort &m_mouseMonitor;
    FloatingResultViewModel m_viewModel;
    FloatingResultView *m_view = nullptr;
    std::unique_ptr<FloatingResultPanel> m_panel;
    PanelAnnouncer m_announcer;
    std::optional<QPoint> m_pointer; ///< as the desktop says, for the next showing
    bool m_resizeScheduled = false;
    bool m_screensChanged = false; ///< since the panel got its place
    bool m_monitoring = false;
    StatusMenu m_statusMenu = StatusMenu::closed;
    QBasicTimer m_menuGrace;      ///< runs after a click on a dock, which may open the status menu
    QElapsedTimer m_popupPressed; ///< since a popup of ours got a press
};

} // namespace orvesa
