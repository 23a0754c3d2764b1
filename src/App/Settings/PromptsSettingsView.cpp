#include "App/Settings/PromptsSettingsView.h"

#include "App/Settings/PromptEditorView.h"
#include "App/Settings/PromptListView.h"
#include "App/Settings/SettingsCard.h"
#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "UI/Style.h"
#include "UI/TextButton.h"
#include "UI/WrappingLabel.h"

#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvesa {

PromptsSettingsView::PromptsSettingsView(const SettingsServices &services, QWidget *parent)
    : QWidget(parent), m_services(services), m_model(services.settings), m_column(new QVBoxLayout(this)),
      m_overview(new QWidget(this)), m_usageNote(new WrappingLabel(Style::statusFont(), m_overview)),
      m_emptyCard(new SettingsCard(m_overview)), m_emptyText(new WrappingLabel(Style::controlFont(), m_emptyCard)),
      m_list(new PromptListView(m_model, m_overview)),
      m_add(new TextButton(TextButton::Look::prominent, m_overview, u"plus"_s))
{
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->addWidget(m_overview);
    m_column->addStretch();
    auto *overview = new QVBoxLayout(m_overview);
    overview->setContentsMargins(0, 0, 0, 0);
    overview->setSpacing(Style::contentMargin);
    m_usageNote->setForegroundRole(QPalette::PlaceholderText);
    m_emptyText->setForegroundRole(QPalette::PlaceholderText);
    overview->addWidget(m_usageNote);
    m_emptyCard->addText(m_emptyText);
    overview->addWidget(m_emptyCard);
    overview->addWidget(m_list);
    auto *buttons = new QHBoxLayout;
    buttons->setContentsMargins(-Style::focusRingWidth, -Style::focusRingWidth, 0, 0);
    buttons->addWidget(m_add);
    buttons->addStretch();
    overview->addLayout(buttons);

    connect(m_add, &QPushButton::clicked, &m_model, &PromptsSettingsViewModel::addPrompt);
    connect(&m_model, &PromptsSettingsViewModel::editingDraftChanged, this, &PromptsSettingsView::refreshEditor);
    connect(&m_model, &PromptsSettingsViewModel::promptsChanged, this, &PromptsSettingsView::refresh);
    connect(&services.settings, &SettingsStore::appLanguageChanged, this, &PromptsSettingsView::refresh);
    refresh();
}

void PromptsSettingsView::refresh()
{
    m_usageNote->setText(Localization::string(L10nKey::promptUsageNote));
    m_emptyText->setText(Localization::string(L10nKey::promptEmptyList));
    m_add->setText(Localization::string(L10nKey::btnAddPrompt));
    const bool isEmpty = m_model.prompts().empty();
    // The row that is deleted last has the keyboard; it goes to the button that makes a new one.
    const bool losesFocus = isEmpty && m_list->isAncestorOf(focusWidget()) && m_list->isVisible();
    m_list->refresh();
    m_emptyCard->setVisible(isEmpty);
    m_list->setVisible(!isEmpty);
    if (losesFocus) {
        m_add->setFocus(Qt::OtherFocusReason);
    }
}

void PromptsSettingsView::refreshEditor()
{
    QUuid edited;
    if (m_editor != nullptr) {
        edited = m_editor->model().draft().id;
        m_column->removeWidget(m_editor);
        m_editor->hide();
        // One of its buttons is on the call stack.
        m_editor->deleteLater();
        m_editor = nullptr;
    }
    m_overview->setVisible(!m_model.editingDraft());
    if (m_model.editingDraft()) {
        m_editor = new PromptEditorView(
            *m_model.editingDraft(), m_services, [this] { m_model.finishEditing(); }, this);
        m_column->insertWidget(0, m_editor);
        m_editor->show();
        m_editor->begin();
    } else {
        focusAfterEditing(edited);
    }
}

void PromptsSettingsView::focusAfterEditing(const QUuid &id)
{
    const auto &rows = m_list->rows();
    const auto row = std::ranges::find(rows, id, &PromptRow::promptID);
    QWidget &next = row == rows.end() ? *m_add : (*row)->editButton();
    next.setFocus(Qt::OtherFocusReason);
}

} // namespace orvesa
