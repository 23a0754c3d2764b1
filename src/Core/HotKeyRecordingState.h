#pragma once

// Whether a control is listening for a new shortcut. While it is, the global shortcuts start nothing.
//
// One object for the whole program, made by the composition. Main thread only.

#include "Models/KeyCombo.h"

#include <QObject>

namespace orvesa {

class HotKeyRecordingState final : public QObject {
    Q_OBJECT

public:
    explicit HotKeyRecordingState(QObject *parent = nullptr);
    ~HotKeyRecordingState() override;

    [[nodiscard]] bool isRecording() const { return m_isRecording; }
    /// Called by the control that listens, never by two at a time.
    void beginRecording();
    void endRecording();
    /// A global shortcut was pressed that the desktop delivered as such, and not as a key: the control that listens
    /// takes it as its candidate. Ignored while none does.
    void takeShortcut(const KeyCombo &combo);

Q_SIGNALS:
    void isRecordingChanged();
    void shortcutTaken(const orvesa::KeyCombo &combo);

private:
    bool m_isRecording = false;
};

} // namespace orvesa
