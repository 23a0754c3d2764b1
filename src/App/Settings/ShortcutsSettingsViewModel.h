#pragma once

// What the shortcuts page knows and does beside its recorders: the feedback below the rows, and the reset buttons.
//
// Main thread only; the settings must outlive it.

#include "Models/HotKeyAction.h"

#include <QObject>

#include <optional>

namespace orvesa {

class SettingsStore;

class ShortcutsSettingsViewModel final : public QObject {
    Q_OBJECT

public:
    explicit ShortcutsSettingsViewModel(SettingsStore &settings, QObject *parent = nullptr);
    ~ShortcutsSettingsViewModel() override;

    [[nodiscard]] const std::optional<QString> &feedbackMessage() const { return m_feedbackMessage; }
    void setFeedbackMessage(const std::optional<QString> &message);

    [[nodiscard]] bool isCustomized(HotKeyAction action) const;
    /// Goes back to the action's default combination; changes nothing where that applies already.
    void reset(HotKeyAction action);

    [[nodiscard]] static QString symbolName(HotKeyAction action);
    [[nodiscard]] static QString title(HotKeyAction action);
    [[nodiscard]] static QString subtitle(HotKeyAction action);
    /// Names the combination that a reset brings back.
    [[nodiscard]] static QString resetHelp(HotKeyAction action);

Q_SIGNALS:
    void feedbackChanged();

private:
    SettingsStore &m_settings;
    std::optional<QString> m_feedbackMessage;
};

} // namespace orvesa
