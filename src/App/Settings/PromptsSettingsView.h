#pragma once

// The page with the user's own prompts: the list, or the editor in its place. Main thread only.

#include "App/Settings/PromptsSettingsViewModel.h"
#include "App/Settings/SettingsServices.h"

#include <QWidget>

class QVBoxLayout;

namespace orvesa {

class PromptEditorView;
class PromptListView;
class SettingsCard;
class TextButton;
class WrappingLabel;

class PromptsSettingsView final : public QWidget {
    Q_OBJECT

public:
    PromptsSettingsView(const SettingsServices &services, QWidget *parent = nullptr);

    [[nodiscard]] PromptsSettingsViewModel &model() { return m_model; }
    [[nodiscard]] PromptListView &list() const { return *m_list; }
    /// Null while the list is shown.
    [[nodiscard]] PromptEditorView *editor() const { return m_editor; }

private:
    void refresh();
    void refreshEditor();
    void focusAfterEditing(const QUuid &id);

    SettingsServices m_services;
    PromptsSettingsViewModel m_model;
    QVBoxLayout *m_column;
    QWidget *m_overview;
    WrappingLabel *m_usageNote;
    SettingsCard *m_emptyCard;
    WrappingLabel *m_emptyText;
    PromptListView *m_list;
    TextButton *m_add;
    PromptEditorView *m_editor = nullptr;
};

} // namespace orvesa
