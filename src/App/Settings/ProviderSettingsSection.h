#pragma once

// One service's API key: a password field, Save and Clear, and what became of them.
//
// The field is never filled from the key store and is emptied after a save. Main thread only; the key store must
// outlive it.

#include "AI/AIProviderType.h"

#include <QCoroTask>

#include <QGroupBox>
#include <QPointer>

class QLabel;
class QLineEdit;
class QPushButton;

namespace orvesa {

class KeychainService;

class ProviderSettingsSection final : public QGroupBox {
    Q_OBJECT

public:
    ProviderSettingsSection(AIProviderType type, KeychainService &keychain, QWidget *parent);

    /// Texts in the interface language; asks whether a key is stored.
    void refresh();

private:
    using Weak = QPointer<ProviderSettingsSection>;

    void updateButtons();
    static QCoro::Task<void> load(Weak self, const KeychainService *keychain, QString account);
    static QCoro::Task<void> save(Weak self, const KeychainService *keychain, QString account, QString value);
    static QCoro::Task<void> clear(Weak self, const KeychainService *keychain, QString account);

    KeychainService &m_keychain;
    QString m_account;
    bool m_hasKey = false;
    QLineEdit *m_field;
    QPushButton *m_save;
    QPushButton *m_clear;
    QLabel *m_message;
};

} // namespace orvesa
