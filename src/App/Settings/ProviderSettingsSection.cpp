#include "App/Settings/ProviderSettingsSection.h"

#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "Platform/WorkspacePort.h"
#include "UI/LinkButton.h"
#include "UI/PlainLabel.h"
#include "UI/SecretField.h"
#include "UI/Spinner.h"
#include "UI/StatusLabel.h"
#include "UI/Style.h"
#include "UI/SymbolButton.h"
#include "UI/TextButton.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QShowEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

constexpr int outset = Style::focusRingWidth;
constexpr int smallestCaption = 52;
constexpr int captionGap = 8;

StatusLabel::Tone labelTone(ProviderSettingsViewModel::Tone tone)
{
    switch (tone) {
    case ProviderSettingsViewModel::Tone::success:
        return StatusLabel::Tone::success;
    case ProviderSettingsViewModel::Tone::failure:
        return StatusLabel::Tone::failure;
    case ProviderSettingsViewModel::Tone::neutral:
        break;
    }
    return StatusLabel::Tone::neutral;
}

/// A row of controls in which the first one stands beside a caption.
QHBoxLayout *captionedRow(QWidget &row, QLabel *caption)
{
    auto *layout = new QHBoxLayout(&row);
    layout->setContentsMargins(outset, 0, 0, 0);
    layout->setSpacing(Style::spacing - 2 * outset);
    layout->addWidget(caption);
    layout->addSpacing(captionGap - outset);
    return layout;
}

/// Names a control of this service for screen readers, which read four of each.
void describe(QWidget &control, const QString &service)
{
    if (control.accessibleDescription() != service) {
        control.setAccessibleDescription(service);
    }
}

void showText(QLineEdit &field, const QString &text)
{
    if (field.text() != text) {
        field.setText(text);
    }
}

} // namespace

ProviderSettingsSection::ProviderSettingsSection(AIProviderType type, const SettingsServices &services,
                                                 ProviderKeyStatus &keyStatus, QWidget *parent)
    : SettingsCard(parent), m_model(type, {services.settings, services.keychain, services.providers, keyStatus})
{
    setAccessibleName(displayName(type));
    buildHeader(services);
    buildKeyRow();
    buildFeedback();
    buildModelRow();
    wireControls();
    refreshTexts();
    refresh();
    connect(&m_model, &ProviderSettingsViewModel::changed, this, &ProviderSettingsSection::refresh);
    connect(&services.settings, &SettingsStore::appLanguageChanged, this, &ProviderSettingsSection::refreshTexts);
}

void ProviderSettingsSection::buildHeader(const SettingsServices &services)
{
    auto *header = new QWidget(this);
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(outset, 0, outset, 0);
    row->setSpacing(Style::spacing);
    QLabel *name = makePlainLabel(Style::headlineFont(), header);
    name->setText(displayName(m_model.type()));
    m_getKey = new LinkButton(u"arrow.up.forward.square"_s, header);
    const QUrl address = apiKeyURL(m_model.type());
    m_getKey->setToolTip(address.toString());
    connect(m_getKey, &QAbstractButton::clicked, this,
            [&workspace = services.workspace, address] { workspace.open(address); });
    m_keySaved = new StatusLabel(Style::statusFont(), header, u"checkmark.seal.fill"_s);
    m_keySaved->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    row->addWidget(name);
    row->addWidget(m_getKey);
    row->addStretch();
    row->addWidget(m_keySaved, 0, Qt::AlignVCenter);
    addControl(header);
}

void ProviderSettingsSection::buildKeyRow()
{
    auto *keys = new QWidget(this);
    m_keyCaption = makePlainLabel(Style::controlFont(), keys);
    QHBoxLayout *row = captionedRow(*keys, m_keyCaption);
    m_key = new SecretField(keys);
    m_save = new TextButton(TextButton::Look::bordered, keys);
    m_test = new TextButton(TextButton::Look::bordered, keys);
    m_clear = new TextButton(TextButton::Look::bordered, keys);
    row->addWidget(m_key, 1);
    for (TextButton *button : {m_save, m_test, m_clear}) {
        row->addWidget(button);
    }
    addControl(keys);
}

void ProviderSettingsSection::buildFeedback()
{
    m_feedback = new QWidget(this);
    auto *row = new QHBoxLayout(m_feedback);
    row->setContentsMargins(outset, 0, outset, Style::unit);
    row->setSpacing(Style::spacing);
    m_spinner = new Spinner(m_feedback);
    m_status = new StatusLabel(Style::statusFont(), m_feedback);
    row->addWidget(m_spinner, 0, Qt::AlignTop);
    row->addWidget(m_status, 1);
    addControl(m_feedback);
}

void ProviderSettingsSection::buildModelRow()
{
    auto *models = new QWidget(this);
    m_modelCaption = makePlainLabel(Style::controlFont(), models);
    QHBoxLayout *row = captionedRow(*models, m_modelCaption);
    m_modelField = new TextField(models);
    m_modelField->setPlaceholderText(defaultModel(m_model.type()));
    m_modelMenu = new SymbolButton(u"chevron.up.chevron.down"_s, SymbolButton::Look::borderless, models);
    row->addWidget(m_modelField, 1);
    row->addWidget(m_modelMenu);
    addControl(models);
}

void ProviderSettingsSection::wireControls()
{
    connect(m_key, &QLineEdit::textEdited, &m_model, &ProviderSettingsViewModel::setAPIKeyInput);
    connect(m_key, &QLineEdit::returnPressed, this, [this] { m_save->click(); });
    connect(m_save, &QPushButton::clicked, &m_model, &ProviderSettingsViewModel::saveKey);
    connect(m_test, &QPushButton::clicked, &m_model, &ProviderSettingsViewModel::testKey);
    connect(m_clear, &QPushButton::clicked, &m_model, &ProviderSettingsViewModel::clearKey);
    connect(m_modelField, &QLineEdit::textEdited, &m_model, &ProviderSettingsViewModel::setModelInput);
    connect(m_modelMenu, &QAbstractButton::clicked, this, &ProviderSettingsSection::openModelMenu);
}

void ProviderSettingsSection::openModelMenu()
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setFont(Style::inLanguage(menu->font(), Style::interfaceLanguage()));
    const auto add = [this, menu](const QString &title, const QString &model) {
        connect(menu->addAction(title), &QAction::triggered, &m_model, [this, model] { m_model.setModelInput(model); });
    };
    const QStringList models = selectableModels(m_model.type());
    for (const QString &model : models) {
        add(model, model);
    }
    menu->addSeparator();
    add(Localization::format(L10nKey::useDefaultModel, defaultModel(m_model.type())), QString());
    menu->popup(
        m_modelMenu->mapToGlobal(QPoint(m_modelMenu->width() - menu->sizeHint().width(), m_modelMenu->height())));
}

void ProviderSettingsSection::refreshTexts()
{
    const QString service = displayName(m_model.type());
    m_getKey->setText(Localization::string(L10nKey::btnGetAPIKey));
    m_getKey->updateGeometry();
    m_keyCaption->setText(Localization::string(L10nKey::labelAPIKey));
    m_modelCaption->setText(Localization::string(L10nKey::labelModel));
    const int caption =
        std::max({smallestCaption, m_keyCaption->sizeHint().width(), m_modelCaption->sizeHint().width()});
    m_keyCaption->setFixedWidth(caption);
    m_modelCaption->setFixedWidth(caption);
    m_key->setAccessibleName(m_keyCaption->text());
    m_modelField->setAccessibleName(m_modelCaption->text());
    m_modelMenu->setDescription(m_modelCaption->text());
    m_save->setText(Localization::string(L10nKey::btnSave));
    m_test->setText(Localization::string(L10nKey::btnTest));
    m_clear->setText(Localization::string(L10nKey::btnClear));
    for (QWidget *control :
         std::initializer_list<QWidget *>{m_getKey, m_key, m_save, m_test, m_clear, m_modelField, m_modelMenu}) {
        describe(*control, service);
    }
    refresh();
}

void ProviderSettingsSection::refresh()
{
    m_keySaved->setMessage(m_model.hasStoredKey() ? std::optional(Localization::string(L10nKey::keySaved))
                                                  : std::nullopt,
                           StatusLabel::Tone::success);
    m_key->setPlaceholderText(
        Localization::string(m_model.hasStoredKey() ? L10nKey::promptSavedKey : L10nKey::promptEnterKey));
    m_key->setToolTip(m_key->placeholderText());
    if (m_model.apiKeyInput().isEmpty() && !m_key->text().isEmpty()) {
        m_key->wipe();
    }
    m_save->setEnabled(m_model.canSave());
    m_test->setEnabled(m_model.canTest());
    m_clear->setEnabled(m_model.canClear());
    const std::optional<QString> message =
        m_model.isTesting() ? Localization::string(L10nKey::msgTesting) : m_model.statusMessage();
    m_spinner->setAccent(palette().color(QPalette::Highlight));
    m_spinner->setVisible(m_model.isTesting());
    m_status->setMessage(message, m_model.isTesting() ? StatusLabel::Tone::neutral : labelTone(m_model.statusTone()));
    m_feedback->setVisible(message.has_value());
    showText(*m_modelField, m_model.modelInput());
}

void ProviderSettingsSection::showEvent(QShowEvent *event)
{
    if (!event->spontaneous()) {
        m_model.load();
    }
    SettingsCard::showEvent(event);
}

void ProviderSettingsSection::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        m_model.leave();
    }
    SettingsCard::hideEvent(event);
}

void ProviderSettingsSection::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange && m_spinner != nullptr) {
        m_spinner->setAccent(palette().color(QPalette::Highlight));
    }
    SettingsCard::changeEvent(event);
}

} // namespace orvesa
