#pragma once

// The prompts page: the list of stored prompts, or the editor for one draft in its place.
//
// Main thread only; the settings must outlive it.

#include "Models/CustomPrompt.h"

#include <QObject>

#include <optional>
#include <vector>

namespace orvesa {

class SettingsStore;

class PromptsSettingsViewModel final : public QObject {
    Q_OBJECT

public:
    explicit PromptsSettingsViewModel(SettingsStore &settings, QObject *parent = nullptr);
    ~PromptsSettingsViewModel() override;

    [[nodiscard]] SettingsStore &settings() const { return m_settings; }
    [[nodiscard]] const std::vector<CustomPrompt> &prompts() const;
    /// The draft that is open in the editor; none while the list is shown.
    [[nodiscard]] const std::optional<CustomPrompt> &editingDraft() const { return m_editingDraft; }

    /// Opens the editor on a copy of the stored prompt.
    void edit(const QUuid &id);
    /// Opens the editor on a new prompt, which is not stored yet.
    void addPrompt();
    /// Deletes the prompt at once.
    void remove(const QUuid &id);
    /// Goes back to the list.
    void finishEditing();

Q_SIGNALS:
    void editingDraftChanged();
    void promptsChanged();

private:
    void setEditingDraft(std::optional<CustomPrompt> draft);

    SettingsStore &m_settings;
    std::optional<CustomPrompt> m_editingDraft;
};

} // namespace orvesa
