#pragma once

// The form for one prompt: a draft that nothing of is stored until it is saved.
//
// Main thread only; the settings must outlive it.

#include "Models/CustomPrompt.h"

#include <QObject>

#include <functional>
#include <optional>

namespace orvesa {

class SettingsStore;

class PromptEditorViewModel final : public QObject {
    Q_OBJECT

public:
    /// `onDone` is called at the end of save() and cancel(), and may delete this object.
    PromptEditorViewModel(SettingsStore &settings, CustomPrompt draft, std::function<void()> onDone,
                          QObject *parent = nullptr);
    ~PromptEditorViewModel() override;

    [[nodiscard]] const CustomPrompt &draft() const { return m_draft; }
    [[nodiscard]] const std::optional<QString> &feedbackMessage() const { return m_feedbackMessage; }

    void setName(const QString &name);
    void setTemplate(const QString &text);
    void setHotKey(const std::optional<KeyCombo> &combo);
    void setFeedbackMessage(const std::optional<QString> &message);
    /// The message when an action or another prompt has the combination already.
    [[nodiscard]] std::optional<QString> validate(const KeyCombo &candidate) const;

    /// Replaces the prompt with the draft's id, or appends the draft. Everything is stored as it was typed.
    void save();
    void cancel();

Q_SIGNALS:
    void hotKeyChanged();
    void feedbackChanged();

private:
    SettingsStore &m_settings;
    CustomPrompt m_draft;
    std::function<void()> m_onDone;
    std::optional<QString> m_feedbackMessage;
};

} // namespace orvesa
