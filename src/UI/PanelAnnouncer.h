#pragma once

// Has screen readers say what changes in the panel: the answer or the failure when it arrives, and status messages.
//
// The panel never takes the focus by itself, so nothing else would make them speak. Main thread; the port must outlive
// it.

#include "UI/FloatingResultViewModel.h"

namespace orvesa {

class PanelWindowPort;

class PanelAnnouncer final {
public:
    explicit PanelAnnouncer(PanelWindowPort &port);

    /// Says what is new since the last call, in the window's name.
    void announce(const FloatingResultViewModel &model, QObject &window);
    /// Everything that the panel shows from now on is new.
    void forget();

private:
    PanelWindowPort &m_port;
    FloatingResultViewModel::Phase m_phase = FloatingResultViewModel::Loading{};
    std::optional<QString> m_statusMessage;
};

} // namespace orvesa
