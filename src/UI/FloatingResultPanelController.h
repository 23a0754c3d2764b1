#pragma once

// Owns the result panel and its view model: places the panel at the pointer, keeps its size fitted to its content and
// hides it when the user clicks elsewhere. Main thread only; settings and ports must outlive it.

#include "UI/FloatingResultViewModel.h"

#include <QObject>

#include <memory>

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

    FloatingResultPanelController(const SettingsStore &settings, PanelWindowPort &panelWindow,
                                  MouseMonitorPort &mouseMonitor);
    ~FloatingResultPanelController() override;

    [[nodiscard]] FloatingResultViewModel &viewModel() { return m_viewModel; }

    void show(Position position);
    void hide();
    [[nodiscard]] bool isVisible() const;

    /// Builds and paints the hidden panel once, so that the first shortcut finds it ready.
    void prepare();

private:
    [[nodiscard]] FloatingResultPanel &panel();
    [[nodiscard]] std::optional<QSize> idealFrameSize();
    void showNearMouse();
    void scheduleResize();
    void resizeToFitContent();
    void installDismissMonitors();
    void removeDismissMonitors();
    void dismissIfOutside();

    const SettingsStore &m_settings;
    PanelWindowPort &m_panelWindow;
    MouseMonitorPort &m_mouseMonitor;
    FloatingResultViewModel m_viewModel;
    FloatingResultView *m_view = nullptr;
    std::unique_ptr<FloatingResultPanel> m_panel;
    bool m_resizeScheduled = false;
    bool m_monitoring = false;
};

} // namespace orvesa
