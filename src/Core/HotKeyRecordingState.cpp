#include "Core/HotKeyRecordingState.h"

namespace orvesa {

HotKeyRecordingState::HotKeyRecordingState(QObject *parent) : QObject(parent) {}

HotKeyRecordingState::~HotKeyRecordingState() = default;

void HotKeyRecordingState::beginRecording()
{
    if (!m_isRecording) {
        m_isRecording = true;
        Q_EMIT isRecordingChanged();
    }
}

void HotKeyRecordingState::endRecording()
{
    if (m_isRecording) {
        m_isRecording = false;
        Q_EMIT isRecordingChanged();
    }
}

void HotKeyRecordingState::takeShortcut(const KeyCombo &combo)
{
    if (m_isRecording) {
        Q_EMIT shortcutTaken(combo);
    }
}

} // namespace orvesa
