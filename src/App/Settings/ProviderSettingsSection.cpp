#include "App/Settings/ProviderSettingsSection.h"

#include "App/Job.h"
#include "Core/KeychainService.h"
#include "Core/Localization.h"
#include "Core/LocalizedError.h"
#include "Models/Text.h"
#include "UI/PlainLabel.h"
#include "UI/Style.h"

#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvesa {

ProviderSettingsSection::ProviderSettingsSection(AIProviderType type, KeychainService &keychain, QWidget *parent)
    : QGroupBox(displayName(type), parent), m_keychain(keychain), m_account(keychainAccount(type)),
      m_field(new QLineEdit(this)), m_save(new QPushButton(this)), m_clear(new QPushButton(this)),
      m_message(makePlainLabel(Style::statusFont(), this))
{
    m_field->setEchoMode(QLineEdit::Password);
    m_message->setWordWrap(true);
    auto *column = new QVBoxLayout(this);
    auto *row = new QHBoxLayout;
    row->addWidget(m_field, 1);
    row->addWidget(m_save);
    row->addWidget(m_clear);
    column->addLayout(row);
    column->addWidget(m_message);
    connect(m_field, &QLineEdit::textChanged, this, &ProviderSettingsSection::updateButtons);
    connect(m_field, &QLineEdit::returnPressed, m_save, &QPushButton::click);
    connect(m_save, &QPushButton::clicked, this, [this] {
        (void)Job::start([self = Weak(this), keychain = &m_keychain, account = m_account,
                          value = m_field->text()](std::stop_token) { return save(self, keychain, account, value); });
    });
    connect(m_clear, &QPushButton::clicked, this, [this] {
        (void)Job::start([self = Weak(this), keychain = &m_keychain, account = m_account](std::stop_token) {
            return clear(self, keychain, account);
        });
    });
    m_message->hide();
    updateButtons();
}

void ProviderSettingsSection::refresh()
{
    const QString label = Localization::string(L10nKey::labelAPIKey);
    m_field->setAccessibleName(title() + u' ' + label);
    m_save->setText(Localization::string(L10nKey::btnSave));
    m_clear->setText(Localization::string(L10nKey::btnClear));
    updateButtons();
    (void)Job::start([self = Weak(this), keychain = &m_keychain, account = m_account](std::stop_token) {
        return load(self, keychain, account);
    });
}

void ProviderSettingsSection::updateButtons()
{
    m_save->setEnabled(!m_field->text().isEmpty());
    m_clear->setEnabled(m_hasKey);
    m_field->setPlaceholderText(Localization::string(m_hasKey ? L10nKey::promptSavedKey : L10nKey::promptEnterKey));
}

QCoro::Task<void> ProviderSettingsSection::load(Weak self, const KeychainService *keychain, QString account)
{
    const bool hasKey = co_await keychain->hasValue(account);
    if (self) {
        self->m_hasKey = hasKey;
        self->updateButtons();
    }
}

QCoro::Task<void> ProviderSettingsSection::save(Weak self, const KeychainService *keychain, QString account,
                                                QString value)
{
    QString message;
    bool saved = true;
    try {
        co_await keychain->set(trimmedWhitespaceAndNewlines(value).toString(), account);
        message = Localization::string(L10nKey::msgKeySaved);
    } catch (const std::exception &error) {
        saved = false;
        message = Localization::format(L10nKey::msgSaveFailed, localizedDescription(error));
    }
    if (!self) {
        co_return;
    }
    if (saved) {
        self->m_field->clear();
        self->m_hasKey = true;
    }
    self->m_message->setText(message);
    self->m_message->show();
    self->updateButtons();
}

QCoro::Task<void> ProviderSettingsSection::clear(Weak self, const KeychainService *keychain, QString account)
{
    QString message;
    try {
        co_await keychain->remove(account);
        message = Localization::string(L10nKey::msgKeyRemoved);
    } catch (const std::exception &error) {
        message = Localization::format(L10nKey::msgRemoveFailed, localizedDescription(error));
    }
    if (!self) {
        co_return;
    }
    self->m_message->setText(message);
    self->m_message->show();
    co_await load(self, keychain, account);
}

} // namespace orvesa
