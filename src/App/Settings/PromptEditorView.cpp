#include "App/Settings/PromptEditorView.h"

#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "UI/KeyComboRecorderView.h"
#include "UI/PlainLabel.h"
#include "UI/StatusLabel.h"
#include "UI/Style.h"
#include "UI/SymbolButton.h"
#include "UI/TextArea.h"
#include "UI/TextButton.h"
#include "UI/TextField.h"
#include "UI/WrappingLabel.h"

#include <QEvent>
#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {
constexpr int outset = Style::focusRingWidth;
constexpr int templateHeight = 168;
} // namespace

PromptEditorView::PromptEditorView(const CustomPrompt &draft, const SettingsServices &services,
                                   std::function<void()> onDone, QWidget *parent)
    : SettingsCard(parent), m_model(services.settings, draft, std::move(onDone)), m_name(new TextField(this)),
      m_template(new TextArea(this)), m_hint(new WrappingLabel(Style::statusFont(), this))
{
    m_name->setText(draft.name);
    m_name->setCursorPosition(0);
    m_template->setPlainText(draft.promptTemplate);
    m_template->setFixedHeight(templateHeight);
    m_hint->setForegroundRole(QPalette::PlaceholderText);
    addControl(m_name);
    addControl(m_template);
    addText(m_hint);
    buildShortcutRow(services);
    m_feedback = new StatusLabel(Style::statusFont(), this, u"exclamationmark.triangle.fill"_s);
    addText(m_feedback);
    buildButtons();

    connect(m_name, &QLineEdit::textChanged, &m_model, &PromptEditorViewModel::setName);
    connect(m_template, &QPlainTextEdit::textChanged, this, [this] { m_model.setTemplate(m_template->text()); });
    connect(&m_model, &PromptEditorViewModel::hotKeyChanged, this, &PromptEditorView::refreshHotKey);
    connect(&m_model, &PromptEditorViewModel::feedbackChanged, this, &PromptEditorView::refreshFeedback);
    connect(&services.settings, &SettingsStore::appLanguageChanged, this, &PromptEditorView::refreshTexts);
    refreshTexts();
    refreshHotKey();
}

void PromptEditorView::buildShortcutRow(const SettingsServices &services)
{
    auto *shortcut = new QWidget(this);
    auto *row = new QHBoxLayout(shortcut);
    row->setContentsMargins(outset, 0, 0, 0);
    row->setSpacing(0);
    m_shortcutCaption = makePlainLabel(Style::controlFont(), shortcut);
    m_recorder = new KeyComboRecorderView(
        {.read = [this] { return m_model.draft().hotKey; },
         .write = [this](const KeyCombo &combo) { m_model.setHotKey(combo); }},
        {}, [this](const KeyCombo &candidate) { return m_model.validate(candidate); },
        [this](const std::optional<QString> &message) { m_model.setFeedbackMessage(message); }, services.recordingState,
        services.keyMonitor, shortcut);
    m_removeShortcut = new SymbolButton(u"xmark.circle.fill"_s, SymbolButton::Look::borderless, shortcut);
    connect(m_removeShortcut, &QAbstractButton::clicked, this, [this] {
        m_model.setHotKey(std::nullopt);
        m_recorder->setFocus(Qt::OtherFocusReason);
    });
    row->addWidget(m_shortcutCaption);
    row->addSpacing(Style::spacing);
    row->addWidget(m_recorder);
    row->addWidget(m_removeShortcut);
    row->addStretch();
    addControl(shortcut);
}

void PromptEditorView::buildButtons()
{
    auto *buttons = new QWidget(this);
    auto *row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, Style::unit, 0, 0);
    row->setSpacing(Style::spacing - 2 * outset + 2);
    m_cancel = new TextButton(TextButton::Look::bordered, buttons);
    m_save = new TextButton(TextButton::Look::prominent, buttons);
    row->addStretch();
    row->addWidget(m_cancel);
    row->addWidget(m_save);
    connect(m_cancel, &QPushButton::clicked, &m_model, &PromptEditorViewModel::cancel);
    connect(m_save, &QPushButton::clicked, &m_model, &PromptEditorViewModel::save);
    addControl(buttons);
}

void PromptEditorView::begin()
{
    m_name->setFocus(Qt::OtherFocusReason);
}

void PromptEditorView::refreshTexts()
{
    const QString name = Localization::string(L10nKey::promptNamePlaceholder);
    m_name->setPlaceholderText(name);
    m_name->setAccessibleName(name);
    m_hint->setText(Localization::string(L10nKey::promptTemplateHint));
    m_template->setAccessibleName(m_hint->text());
    m_shortcutCaption->setText(Localization::string(L10nKey::labelPromptShortcut));
    m_recorder->setSubject(m_shortcutCaption->text());
    m_recorder->setPlaceholder(Localization::string(L10nKey::noShortcut));
    m_removeShortcut->setDescription(Localization::string(L10nKey::btnDelete));
    m_removeShortcut->setAccessibleDescription(m_shortcutCaption->text());
    m_cancel->setText(Localization::string(L10nKey::btnCancel));
    m_save->setText(Localization::string(L10nKey::btnSave));
    m_recorder->setAccent(palette().color(QPalette::Link));
}

void PromptEditorView::refreshHotKey()
{
    m_recorder->refresh();
    m_removeShortcut->setVisible(m_model.draft().hotKey.has_value());
}

void PromptEditorView::refreshFeedback()
{
    m_feedback->setMessage(m_model.feedbackMessage(), StatusLabel::Tone::warning);
}

void PromptEditorView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange && m_save != nullptr) {
        m_recorder->setAccent(palette().color(QPalette::Link));
    }
    SettingsCard::changeEvent(event);
}

} // namespace orvesa
