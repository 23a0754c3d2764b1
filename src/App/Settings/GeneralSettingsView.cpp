#include "App/Settings/GeneralSettingsView.h"

#include "App/Settings/SettingsCard.h"
#include "Core/AccessibilityPermissionService.h"
#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "Platform/AccessibilityTrustPort.h"
#include "UI/Picker.h"
#include "UI/PlainLabel.h"
#include "UI/StatusLabel.h"
#include "UI/Style.h"
#include "UI/Switch.h"
#include "UI/TextButton.h"
#include "UI/ThemeSwatch.h"
#include "UI/WrappingLabel.h"

#include <QEvent>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

/// Each language in its own words, so that somebody who landed in the wrong one finds the way back.
QString ownName(AppLanguage language)
{
    switch (language) {
    case AppLanguage::traditionalChinese:
        return u"繁體中文"_s;
    case AppLanguage::japanese:
        return u"日本語"_s;
    case AppLanguage::english:
        break;
    }
    return u"English"_s;
}

void showLanguages(Picker &picker, AppLanguage current)
{
    QStringList names;
    QList<TextLanguage> languages;
    for (const AppLanguage language : allCases<AppLanguage>()) {
        names.append(ownName(language));
        languages.append(textLanguage(language));
    }
    picker.setChoices(names, static_cast<int>(current), languages);
}

template <typename Enumeration, typename Text>
void showChoices(Picker &picker, Enumeration current, Text text)
{
    QStringList choices;
    for (const Enumeration value : allCases<Enumeration>()) {
        choices.append(text(value));
    }
    picker.setChoices(choices, static_cast<int>(current));
}

template <typename Enumeration>
Enumeration chosen(int index)
{
    return allCases<Enumeration>().at(static_cast<std::size_t>(index));
}

/// A caption that is also its control's name for screen readers.
void nameControl(QLabel &caption, QWidget &control, L10nKey key)
{
    const QString text = Localization::string(key);
    caption.setText(text);
    if (control.accessibleName() != text) {
        control.setAccessibleName(text);
        // A picker's name is what is chosen; what it is for is its label and its description.
        control.setAccessibleDescription(text);
        caption.setBuddy(&control);
    }
}

} // namespace

GeneralSettingsView::GeneralSettingsView(SettingsServices services, QWidget *parent)
    : QWidget(parent), m_services(services)
{
    m_generalCard = makeGeneralCard();
    m_requestsCard = makeRequestsCard();
    m_permissionsCard = makePermissionsCard();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Style::contentMargin);
    column->addWidget(m_generalCard);
    column->addWidget(m_requestsCard);
    column->addWidget(m_permissionsCard);
    column->addStretch();
    wireControls();
    refresh();
}

SettingsCard *GeneralSettingsView::makeGeneralCard()
{
    auto *card = new SettingsCard(this);
    m_languageCaption = makePlainLabel(Style::controlFont(), card);
    m_language = new Picker(card);
    card->addRow(m_languageCaption, m_language);
    m_themeCaption = makePlainLabel(Style::controlFont(), card);
    auto *swatches = new QWidget(card);
    auto *row = new QHBoxLayout(swatches);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Style::unit);
    for (const AppTheme theme : allCases<AppTheme>()) {
        m_themes.push_back(new ThemeSwatch(theme, swatches));
        row->addWidget(m_themes.back());
    }
    card->addRow(m_themeCaption, swatches);
    return card;
}

SettingsCard *GeneralSettingsView::makeRequestsCard()
{
    auto *card = new SettingsCard(this);
    const auto addPicker = [card](QLabel *&caption, Picker *&picker) {
        caption = makePlainLabel(Style::controlFont(), card);
        picker = new Picker(card);
        card->addRow(caption, picker);
    };
    addPicker(m_providerCaption, m_provider);
    addPicker(m_targetCaption, m_target);
    addPicker(m_polishCaption, m_polish);
    m_thinkingCaption = makePlainLabel(Style::controlFont(), card);
    m_thinking = new Switch(card);
    card->addRow(m_thinkingCaption, m_thinking);
    m_thinkingNote = new WrappingLabel(Style::statusFont(), card);
    m_thinkingNote->setForegroundRole(QPalette::PlaceholderText);
    card->addSpacing(-Style::spacing);
    card->addText(m_thinkingNote);
    return card;
}

SettingsCard *GeneralSettingsView::makePermissionsCard()
{
    auto *card = new SettingsCard(this);
    auto *permission = new QWidget(card);
    auto *row = new QHBoxLayout(permission);
    row->setContentsMargins(Style::focusRingWidth, 0, 0, 0);
    m_permission = new StatusLabel(Style::controlFont(), permission);
    m_openSystemSettings = new TextButton(TextButton::Look::bordered, permission);
    row->addWidget(m_permission, 1, Qt::AlignVCenter);
    row->addWidget(m_openSystemSettings);
    card->addControl(permission);
    return card;
}

void GeneralSettingsView::wireControls()
{
    SettingsStore &settings = m_services.settings;
    // Choosing what is chosen already changes nothing.
    connect(m_language, &QComboBox::activated, this, [&settings](int index) {
        if (const auto value = chosen<AppLanguage>(index); value != settings.appLanguage()) {
            settings.setAppLanguage(value);
        }
    });
    connect(m_provider, &QComboBox::activated, this, [&settings](int index) {
        if (const auto value = chosen<AIProviderType>(index); value != settings.defaultProvider()) {
            settings.setDefaultProvider(value);
        }
    });
    connect(m_target, &QComboBox::activated, this, [&settings](int index) {
        if (const auto value = chosen<TargetLanguage>(index); value != settings.targetLanguage()) {
            settings.setTargetLanguage(value);
        }
    });
    connect(m_polish, &QComboBox::activated, this, [&settings](int index) {
        if (const auto value = chosen<PolishMode>(index); value != settings.polishMode()) {
            settings.setPolishMode(value);
        }
    });
    connect(m_thinking, &QCheckBox::clicked, this, [&settings](bool isOn) { settings.setThinkingEnabled(isOn); });
    for (const ThemeSwatch *swatch : m_themes) {
        connect(swatch, &QRadioButton::clicked, this, [&settings, theme = swatch->theme()] {
            if (theme != settings.theme()) {
                settings.setTheme(theme);
            }
        });
    }
    connect(m_openSystemSettings, &QPushButton::clicked, this,
            [this] { AccessibilityPermissionService::openSystemSettings(m_services.workspace); });
    for (const auto changed : {&SettingsStore::appLanguageChanged, &SettingsStore::themeChanged,
                               &SettingsStore::defaultProviderChanged, &SettingsStore::targetLanguageChanged,
                               &SettingsStore::polishModeChanged, &SettingsStore::thinkingEnabledChanged}) {
        connect(&settings, changed, this, &GeneralSettingsView::refresh);
    }
}

void GeneralSettingsView::refresh()
{
    refreshTexts();
    refreshChoices();
    refreshPermission();
}

void GeneralSettingsView::refreshTexts()
{
    m_generalCard->setTitle(Localization::string(L10nKey::cardGeneral));
    m_requestsCard->setTitle(Localization::string(L10nKey::cardAI));
    m_permissionsCard->setTitle(Localization::string(L10nKey::cardPermissions));
    nameControl(*m_languageCaption, *m_language, L10nKey::labelAppLanguage);
    m_themeCaption->setText(Localization::string(L10nKey::labelTheme));
    for (ThemeSwatch *swatch : m_themes) {
        swatch->setText(displayText(swatch->theme()));
        swatch->updateGeometry();
    }
    nameControl(*m_providerCaption, *m_provider, L10nKey::labelDefaultProvider);
    nameControl(*m_targetCaption, *m_target, L10nKey::labelTargetLanguage);
    nameControl(*m_polishCaption, *m_polish, L10nKey::labelPolishMode);
    nameControl(*m_thinkingCaption, *m_thinking, L10nKey::labelThinkingMode);
    m_thinkingNote->setText(Localization::string(L10nKey::thinkingModeNote));
    m_thinking->setAccessibleDescription(m_thinkingNote->text());
    m_openSystemSettings->setText(Localization::string(L10nKey::openSystemSettings));
}

void GeneralSettingsView::refreshChoices()
{
    const SettingsStore &settings = m_services.settings;
    showLanguages(*m_language, settings.appLanguage());
    showChoices(*m_provider, settings.defaultProvider(), [](AIProviderType type) { return displayName(type); });
    showChoices(*m_target, settings.targetLanguage(), [](TargetLanguage language) { return displayText(language); });
    showChoices(*m_polish, settings.polishMode(), [](PolishMode mode) { return displayText(mode); });
    m_thinking->setChecked(settings.thinkingEnabled());
    for (ThemeSwatch *swatch : m_themes) {
        swatch->setChecked(swatch->theme() == settings.theme());
    }
}

void GeneralSettingsView::refreshPermission()
{
    const bool isTrusted = m_services.trust.isTrusted();
    m_permission->setSymbol(isTrusted ? u"checkmark.circle.fill"_s : u"xmark.circle.fill"_s);
    m_permission->setMessage(
        Localization::string(isTrusted ? L10nKey::permissionGranted : L10nKey::permissionNotGranted),
        isTrusted ? StatusLabel::Tone::success : StatusLabel::Tone::failure);
    m_openSystemSettings->setVisible(!isTrusted);
}

bool GeneralSettingsView::event(QEvent *event)
{
    // Whoever comes back from granting the permission sees that it is granted.
    if (event->type() == QEvent::WindowActivate) {
        refreshPermission();
    }
    return QWidget::event(event);
}

void GeneralSettingsView::showEvent(QShowEvent *event)
{
    refreshPermission();
    QWidget::showEvent(event);
}

} // namespace orvesa
