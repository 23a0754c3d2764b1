#pragma once

// The shortcut recorder of one built-in action: reads and writes the settings, and refuses what another action or
// prompt uses.
//
// It follows the settings and the interface language by itself. Main thread only; everything must outlive it.

#include "Models/HotKeyAction.h"
#include "UI/KeyComboRecorderView.h"

namespace orvesa {

class SettingsStore;

class HotKeyRecorderView final : public KeyComboRecorderView {
    Q_OBJECT

public:
    HotKeyRecorderView(HotKeyAction action, SettingsStore &settings, Feedback onFeedback, HotKeyRecordingState &state,
                       KeyMonitorPort &monitor, QWidget *parent = nullptr);
    ~HotKeyRecorderView() override;

    [[nodiscard]] HotKeyAction action() const { return m_action; }

private:
    HotKeyAction m_action;
};

} // namespace orvesa
