#pragma once

// The control with which the user sets a shortcut: click it, press the new combination, and it is stored; Escape or a
// second click cancels.
//
// It shows the bound combination or the placeholder; after the value, the placeholder or the interface language has
// changed the owner calls refresh(). While it listens every key press comes to it and to nothing else. It stops
// listening when it loses the focus, is hidden, disabled or deleted, or its window loses the keyboard. At most one
// control of the program listens at a time. The widget is larger than the drawn control by outset() on each side, for
// the focus ring. Main thread only; state and monitor must outlive it.

#include "Models/KeyCombo.h"
#include "Platform/KeyMonitorPort.h"
#include "UI/Style.h"

#include <QAbstractButton>

#include <functional>
#include <optional>

namespace orvesa {

class HotKeyRecordingState;

class KeyComboRecorderView : public QAbstractButton {
    Q_OBJECT

public:
    /// The value shown and written.
    struct Binding {
        std::function<std::optional<KeyCombo>()> read;
        std::function<void(const KeyCombo &combo)> write;
    };
    /// The message when the candidate is not acceptable, nothing when it is.
    using Validate = std::function<std::optional<QString>(const KeyCombo &candidate)>;
    /// Takes a message to show under the control, or nothing to clear it. May be empty.
    using Feedback = std::function<void(const std::optional<QString> &message)>;

    KeyComboRecorderView(Binding combo, QString placeholder, Validate validate, Feedback onFeedback,
                         HotKeyRecordingState &state, KeyMonitorPort &monitor, QWidget *parent = nullptr);
    ~KeyComboRecorderView() override;

    [[nodiscard]] bool isRecording() const { return m_isRecording; }
    /// What the control reads at the moment.
    [[nodiscard]] QString shownText() const;

    /// Takes the value and the texts anew.
    void refresh();
    void setPlaceholder(const QString &placeholder);
    /// What the shortcut is for: what screen readers say before its text.
    void setSubject(const QString &subject);
    /// The colour of the focus ring and of the listening state.
    void setAccent(const QColor &accent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] static constexpr int outset() { return Style::focusRingWidth; }

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void toggleRecording();
    void startRecording();
    void stopRecording();
    void take(const MonitoredKeyPress &press);
    void consider(const KeyCombo &candidate);
    void sendFeedback(const std::optional<QString> &message) const;

    Binding m_combo;
    QString m_placeholder;
    Validate m_validate;
    Feedback m_onFeedback;
    HotKeyRecordingState &m_state;
    KeyMonitorPort &m_monitor;
    QString m_subject;
    QColor m_accent;
    bool m_isRecording = false;
    KeyMonitorPort::Token m_eventMonitor = 0;
    QMetaObject::Connection m_shortcuts; ///< to the state's shortcuts while listening
};

} // namespace orvesa
