#include "App/Settings/PromptRow.h"

#include "App/Settings/SettingsSection.h"
#include "Core/Localization.h"
#include "UI/ControlPainting.h"
#include "UI/ElidedLabel.h"
#include "UI/GradientTile.h"
#include "UI/PlainLabel.h"
#include "UI/Style.h"
#include "UI/TextButton.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {
constexpr int outset = Style::focusRingWidth;
constexpr int horizontalPadding = 14;
constexpr int verticalPadding = 10;
constexpr qsizetype longestSpokenName = 80;
} // namespace

PromptRow::PromptRow(Actions actions, QWidget *parent)
    : QWidget(parent), m_name(new ElidedLabel(Style::headlineFont(), this)),
      m_shortcut(makePlainLabel(Style::statusFont(), this)), m_preview(new ElidedLabel(Style::statusFont(), this)),
      m_edit(new TextButton(TextButton::Look::bordered, this, u"pencil"_s)),
      m_delete(new TextButton(TextButton::Look::bordered, this))
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(horizontalPadding, verticalPadding, horizontalPadding - outset, verticalPadding);
    row->setSpacing(0);
    row->addWidget(new GradientTile(u"quote.bubble.fill"_s, iconGradient(SettingsSection::prompts), this));
    row->addSpacing(Style::sectionSpacing);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(1);
    auto *title = new QHBoxLayout;
    title->setSpacing(Style::spacing);
    m_name->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    m_shortcut->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_shortcut->setForegroundRole(QPalette::PlaceholderText);
    m_preview->setForegroundRole(QPalette::PlaceholderText);
    m_preview->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    title->addWidget(m_name);
    title->addWidget(m_shortcut);
    title->addStretch();
    texts->addLayout(title);
    texts->addWidget(m_preview);
    row->addLayout(texts, 1);
    row->addSpacing(Style::spacing);
    row->addWidget(m_edit);
    row->addSpacing(Style::spacing - 2 * outset);
    row->addWidget(m_delete);

    connect(m_edit, &QPushButton::clicked, this, [this, edit = actions.edit] { edit(m_id); });
    connect(m_delete, &QPushButton::clicked, this, [this, remove = actions.remove] { remove(m_id); });
}

void PromptRow::setPrompt(const CustomPrompt &prompt)
{
    m_id = prompt.id;
    m_name->setContent(prompt.shownName());
    m_shortcut->setText(prompt.hotKey ? prompt.hotKey->displayText() : QString());
    m_shortcut->setVisible(prompt.hotKey.has_value());
    m_preview->setContent(prompt.promptTemplate);
    m_edit->setText(Localization::string(L10nKey::btnEdit));
    m_delete->setText(Localization::string(L10nKey::btnDelete));
    // Screen readers read many such buttons: each says whose it is.
    const QString spoken = m_name->text().left(longestSpokenName);
    for (TextButton *button : {m_edit, m_delete}) {
        if (button->accessibleDescription() != spoken) {
            button->setAccessibleDescription(spoken);
        }
    }
}

void PromptRow::paintEvent(QPaintEvent *)
{
    const Style::Colors &colors = Style::colors(palette());
    QPainter painter(this);
    ControlPainting::paintFrame(painter, rect(), Style::cardRadius, colors.card, colors.line);
}

} // namespace orvesa
