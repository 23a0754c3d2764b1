#include "UI/HotKeyRecorderView.h"

#include "Core/Localization.h"
#include "Core/SettingsStore.h"

namespace orvesa {

namespace {

KeyComboRecorderView::Binding binding(HotKeyAction action, SettingsStore &settings)
{
    return {.read = [action, &settings]() -> std::optional<KeyCombo> { return settings.combo(action); },
            .write = [action, &settings](const KeyCombo &combo) { settings.setCombo(combo, action); }};
}

KeyComboRecorderView::Validate conflictTest(HotKeyAction action, const SettingsStore &settings)
{
    return [action, &settings](const KeyCombo &candidate) -> std::optional<QString> {
        if (settings.isComboTaken(candidate, action, std::nullopt)) {
            return Localization::format(L10nKey::feedbackInUse, candidate.displayText());
        }
        return std::nullopt;
    };
}

} // namespace

HotKeyRecorderView::HotKeyRecorderView(HotKeyAction action, SettingsStore &settings, Feedback onFeedback,
                                       HotKeyRecordingState &state, KeyMonitorPort &monitor, QWidget *parent)
    : KeyComboRecorderView(binding(action, settings), {}, conflictTest(action, settings), std::move(onFeedback), state,
                           monitor, parent),
      m_action(action)
{
    const auto name = [this] { setSubject(Localization::string(menuTitleKey(m_action))); };
    name();
    connect(&settings, &SettingsStore::hotKeyOverridesChanged, this, &HotKeyRecorderView::refresh);
    connect(&settings, &SettingsStore::appLanguageChanged, this, name);
}

HotKeyRecorderView::~HotKeyRecorderView() = default;

} // namespace orvesa
