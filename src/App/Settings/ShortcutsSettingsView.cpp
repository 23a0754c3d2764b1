#include "App/Settings/ShortcutsSettingsView.h"

#include "App/Settings/HotKeyRow.h"
#include "App/Settings/SettingsCard.h"
#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "UI/Divider.h"
#include "UI/StatusLabel.h"
#include "UI/Style.h"
#include "UI/WrappingLabel.h"

#include <QHideEvent>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace orvesa {

ShortcutsSettingsView::ShortcutsSettingsView(const SettingsServices &services, QWidget *parent)
    : QWidget(parent), m_model(services.settings), m_card(new SettingsCard(this)),
      m_feedback(new StatusLabel(Style::statusFont(), m_card, u"exclamationmark.triangle.fill"_s)),
      m_info(new WrappingLabel(Style::statusFont(), this))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Style::contentMargin);
    column->addWidget(m_card);
    m_info->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(m_info);
    column->addStretch();

    const auto feedback = [this](const std::optional<QString> &message) { m_model.setFeedbackMessage(message); };
    for (const HotKeyAction action : allCases<HotKeyAction>()) {
        if (action != allCases<HotKeyAction>().front()) {
            m_card->addControl(new Divider(m_card));
        }
        m_card->addControl(new HotKeyRow(action, services, m_model, feedback, m_card));
    }
    m_card->addText(m_feedback);
    refreshTexts();
    connect(&m_model, &ShortcutsSettingsViewModel::feedbackChanged, this, &ShortcutsSettingsView::refreshFeedback);
    connect(&services.settings, &SettingsStore::appLanguageChanged, this, &ShortcutsSettingsView::refreshTexts);
}

void ShortcutsSettingsView::refreshTexts()
{
    m_card->setTitle(Localization::string(L10nKey::cardGlobalShortcuts));
    m_info->setText(Localization::string(L10nKey::shortcutsInfo));
}

void ShortcutsSettingsView::refreshFeedback()
{
    m_feedback->setMessage(m_model.feedbackMessage(), StatusLabel::Tone::warning);
}

void ShortcutsSettingsView::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        m_model.setFeedbackMessage(std::nullopt);
    }
    QWidget::hideEvent(event);
}

} // namespace orvesa
