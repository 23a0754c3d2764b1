#include "App/Settings/PromptsSettingsViewModel.h"

#include "Core/SettingsStore.h"

#include <algorithm>

namespace orvesa {

PromptsSettingsViewModel::PromptsSettingsViewModel(SettingsStore &settings, QObject *parent)
    : QObject(parent), m_settings(settings)
{
    connect(&settings, &SettingsStore::customPromptsChanged, this, &PromptsSettingsViewModel::promptsChanged);
}

PromptsSettingsViewModel::~PromptsSettingsViewModel() = default;

const std::vector<CustomPrompt> &PromptsSettingsViewModel::prompts() const
{
    return m_settings.customPrompts();
}

void PromptsSettingsViewModel::edit(const QUuid &id)
{
    const auto found = std::ranges::find(prompts(), id, &CustomPrompt::id);
    if (found != prompts().end()) {
        setEditingDraft(*found);
    }
}

void PromptsSettingsViewModel::addPrompt()
{
    setEditingDraft(CustomPrompt());
}

void PromptsSettingsViewModel::remove(const QUuid &id)
{
    std::vector<CustomPrompt> remaining = prompts();
    std::erase_if(remaining, [&](const CustomPrompt &prompt) { return prompt.id == id; });
    m_settings.setCustomPrompts(std::move(remaining));
}

void PromptsSettingsViewModel::finishEditing()
{
    setEditingDraft(std::nullopt);
}

void PromptsSettingsViewModel::setEditingDraft(std::optional<CustomPrompt> draft)
{
    m_editingDraft = std::move(draft);
    Q_EMIT editingDraftChanged();
}

} // namespace orvesa
