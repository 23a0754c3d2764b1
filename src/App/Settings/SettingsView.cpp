#include "App/Settings/SettingsView.h"

#include "App/Settings/ProviderSettingsSection.h"
#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "UI/PlainLabel.h"
#include "UI/Style.h"

#include <QComboBox>
#include <QFormLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

constexpr int windowWidth = 620;
constexpr int pageMargin = 26;

/// Each language in its own words, so that somebody who landed in the wrong one finds the way back.
QString ownName(AppLanguage language)
{
    switch (language) {
    case AppLanguage::traditionalChinese:
        return u"繁體中文"_s;
    case AppLanguage::japanese:
        return u"日本語"_s;
    case AppLanguage::english:
        return u"English"_s;
    }
    return {};
}

template <typename Enumeration, typename Text>
void fill(QComboBox &picker, Enumeration current, Text text)
{
    picker.clear();
    for (const Enumeration value : allCases<Enumeration>()) {
        picker.addItem(text(value));
    }
    picker.setCurrentIndex(static_cast<int>(current));
}

} // namespace

SettingsView::SettingsView(SettingsStore &settings, KeychainService &keychain)
    : m_settings(settings), m_languageLabel(makePlainLabel(Style::controlFont(), this)),
      m_language(new QComboBox(this)), m_providerLabel(makePlainLabel(Style::controlFont(), this)),
      m_provider(new QComboBox(this)), m_targetLabel(makePlainLabel(Style::controlFont(), this)),
      m_target(new QComboBox(this))
{
    setWindowFlag(Qt::Window);
    setAttribute(Qt::WA_QuitOnClose, false);
    setMinimumWidth(windowWidth);
    auto *page = new QVBoxLayout(this);
    page->setContentsMargins(pageMargin, pageMargin, pageMargin, pageMargin);
    page->setSpacing(Style::contentMargin);
    auto *form = new QFormLayout;
    form->setVerticalSpacing(Style::spacing);
    form->addRow(m_languageLabel, m_language);
    form->addRow(m_providerLabel, m_provider);
    form->addRow(m_targetLabel, m_target);
    m_languageLabel->setBuddy(m_language);
    m_providerLabel->setBuddy(m_provider);
    m_targetLabel->setBuddy(m_target);
    page->addLayout(form);
    for (const AIProviderType type : allCases<AIProviderType>()) {
        m_sections.push_back(new ProviderSettingsSection(type, keychain, this));
        page->addWidget(m_sections.back());
    }
    page->addStretch();
    buildPickers();
    connect(&settings, &SettingsStore::appLanguageChanged, this, &SettingsView::refresh);
    connect(&settings, &SettingsStore::defaultProviderChanged, this, &SettingsView::refresh);
    connect(&settings, &SettingsStore::targetLanguageChanged, this, &SettingsView::refresh);
}

void SettingsView::buildPickers()
{
    connect(m_language, &QComboBox::activated, this, [this](int index) {
        m_settings.setAppLanguage(allCases<AppLanguage>().at(static_cast<std::size_t>(index)));
    });
    connect(m_provider, &QComboBox::activated, this, [this](int index) {
        m_settings.setDefaultProvider(allCases<AIProviderType>().at(static_cast<std::size_t>(index)));
    });
    connect(m_target, &QComboBox::activated, this, [this](int index) {
        m_settings.setTargetLanguage(allCases<TargetLanguage>().at(static_cast<std::size_t>(index)));
    });
}

void SettingsView::refresh()
{
    setWindowTitle(Localization::string(L10nKey::sidebarSettings));
    const auto name = [](QLabel *label, QComboBox *picker, L10nKey key) {
        label->setText(Localization::string(key));
        picker->setAccessibleName(Localization::string(key));
    };
    name(m_languageLabel, m_language, L10nKey::labelAppLanguage);
    name(m_providerLabel, m_provider, L10nKey::labelDefaultProvider);
    name(m_targetLabel, m_target, L10nKey::labelTargetLanguage);
    fill(*m_language, m_settings.appLanguage(), ownName);
    fill(*m_provider, m_settings.defaultProvider(), [](AIProviderType type) { return displayName(type); });
    fill(*m_target, m_settings.targetLanguage(), [](TargetLanguage language) { return displayText(language); });
    for (ProviderSettingsSection *section : m_sections) {
        section->refresh();
    }
}

} // namespace orvesa
