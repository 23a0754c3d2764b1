#pragma once

// The form for one prompt. Draws and forwards; the view model decides. Main thread only.

#include "App/Settings/PromptEditorViewModel.h"
#include "App/Settings/SettingsCard.h"
#include "App/Settings/SettingsServices.h"

class QLabel;

namespace orvesa {

class KeyComboRecorderView;
class StatusLabel;
class SymbolButton;
class TextArea;
class TextButton;
class TextField;
class WrappingLabel;

class PromptEditorView final : public SettingsCard {
    Q_OBJECT

public:
    /// `onDone` is called after the draft was saved or given up.
    PromptEditorView(const CustomPrompt &draft, const SettingsServices &services, std::function<void()> onDone,
                     QWidget *parent = nullptr);

    [[nodiscard]] PromptEditorViewModel &model() { return m_model; }
    /// Gives the first field the keyboard.
    void begin();

protected:
    void changeEvent(QEvent *event) override;

private:
    void buildShortcutRow(const SettingsServices &services);
    void buildButtons();
    void refreshTexts();
    void refreshHotKey();
    void refreshFeedback();

    PromptEditorViewModel m_model;
    TextField *m_name;
    TextArea *m_template;
    WrappingLabel *m_hint;
    QLabel *m_shortcutCaption = nullptr;
    KeyComboRecorderView *m_recorder = nullptr;
    SymbolButton *m_removeShortcut = nullptr;
    StatusLabel *m_feedback = nullptr;
    TextButton *m_cancel = nullptr;
    TextButton *m_save = nullptr;
};

} // namespace orvesa
