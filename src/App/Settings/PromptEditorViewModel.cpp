#include "App/Settings/PromptEditorViewModel.h"

#include "Core/Localization.h"
#include "Core/SettingsStore.h"

#include <algorithm>

namespace orvesa {

PromptEditorViewModel::PromptEditorViewModel(SettingsStore &settings, CustomPrompt draft, std::function<void()> onDone,
                                             QObject *parent)
    : QObject(parent), m_settings(settings), m_draft(std::move(draft)), m_onDone(std::move(onDone))
{
}

PromptEditorViewModel::~PromptEditorViewModel() = default;

void PromptEditorViewModel::setName(const QString &name)
{
    m_draft.name = name;
}

void PromptEditorViewModel::setTemplate(const QString &text)
{
    m_draft.promptTemplate = text;
}

void PromptEditorViewModel::setHotKey(const std::optional<KeyCombo> &combo)
{
    m_draft.hotKey = combo;
    Q_EMIT hotKeyChanged();
}

void PromptEditorViewModel::setFeedbackMessage(const std::optional<QString> &message)
{
    if (message != m_feedbackMessage) {
        m_feedbackMessage = message;
        Q_EMIT feedbackChanged();
    }
}

std::optional<QString> PromptEditorViewModel::validate(const KeyCombo &candidate) const
{
    if (m_settings.isComboTaken(candidate, std::nullopt, m_draft.id)) {
        return Localization::format(L10nKey::feedbackInUse, candidate.displayText());
    }
    return std::nullopt;
}

void PromptEditorViewModel::save()
{
    std::vector<CustomPrompt> prompts = m_settings.customPrompts();
    const auto stored = std::ranges::find(prompts, m_draft.id, &CustomPrompt::id);
    if (stored != prompts.end()) {
        *stored = m_draft;
    } else {
        prompts.push_back(m_draft);
    }
    m_settings.setCustomPrompts(std::move(prompts));
    cancel();
}

void PromptEditorViewModel::cancel()
{
    const std::function<void()> done = m_onDone;
    done();
}

} // namespace orvesa
