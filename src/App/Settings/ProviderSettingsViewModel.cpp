#include "App/Settings/ProviderSettingsViewModel.h"

#include "AI/AIProviderSource.h"
#include "App/Settings/ProviderKeyStatus.h"
#include "Core/KeychainService.h"
#include "Core/Localization.h"
#include "Core/LocalizedError.h"
#include "Core/SettingsStore.h"
#include "Models/Text.h"

#include <exception>

namespace orvesa {

ProviderSettingsViewModel::ProviderSettingsViewModel(AIProviderType type, const Collaborators &collaborators,
                                                     QObject *parent)
    : QObject(parent), m_type(type), m_with(collaborators)
{
    connect(&m_with.settings, &SettingsStore::willChange, this, &ProviderSettingsViewModel::followStoredModel);
    connect(&m_with.keyStatus, &ProviderKeyStatus::looked, this, &ProviderSettingsViewModel::takeStoredKey);
    connect(&m_with.keyStatus, &ProviderKeyStatus::refused, this, &ProviderSettingsViewModel::forgetStoredKey);
}

ProviderSettingsViewModel::~ProviderSettingsViewModel()
{
    if (m_test) {
        m_test->requestStop();
    }
}

std::optional<QString> ProviderSettingsViewModel::statusMessage() const
{
    if (!m_status) {
        return std::nullopt;
    }
    return m_status->argument ? Localization::format(m_status->key, *m_status->argument)
                              : Localization::string(m_status->key);
}

ProviderSettingsViewModel::Tone ProviderSettingsViewModel::statusTone() const
{
    switch (m_status ? m_status->key : L10nKey::msgTesting) {
    case L10nKey::msgKeyValid:
    case L10nKey::msgKeySaved:
        return Tone::success;
    case L10nKey::msgKeyInvalid:
    case L10nKey::msgSaveFailed:
    case L10nKey::msgRemoveFailed:
        return Tone::failure;
    default:
        return Tone::neutral;
    }
}

bool ProviderSettingsViewModel::canSave() const
{
    return !m_apiKeyInput.isEmpty() && !m_isStoring;
}

bool ProviderSettingsViewModel::canTest() const
{
    return !m_isTesting && (m_hasStoredKey || !m_apiKeyInput.isEmpty());
}

bool ProviderSettingsViewModel::canClear() const
{
    return m_hasStoredKey && !m_isStoring;
}

void ProviderSettingsViewModel::load()
{
    reset();
    m_awaitsStoredKey = true;
    m_modelInput = m_with.settings.storedModel(m_type).value_or(QString());
    Q_EMIT changed();
    m_with.keyStatus.look();
    // A look that is under way may have passed this service already.
    if (const std::optional<bool> hasKey = m_with.keyStatus.hasKey(m_type)) {
        takeStoredKey(m_type, *hasKey);
    } else if (!m_with.keyStatus.isRefreshing()) {
        forgetStoredKey();
    }
}

void ProviderSettingsViewModel::takeStoredKey(AIProviderType type, bool hasKey)
{
    if (type != m_type || !m_awaitsStoredKey) {
        return;
    }
    m_awaitsStoredKey = false;
    if (m_hasStoredKey != hasKey) {
        m_hasStoredKey = hasKey;
        Q_EMIT changed();
    }
}

void ProviderSettingsViewModel::forgetStoredKey()
{
    // What an earlier visit found says nothing about a key store that refuses now. A later look may still tell.
    if (m_awaitsStoredKey && m_hasStoredKey) {
        m_hasStoredKey = false;
        Q_EMIT changed();
    }
}

void ProviderSettingsViewModel::leave()
{
    reset();
    Q_EMIT changed();
}

void ProviderSettingsViewModel::reset()
{
    ++m_visit;
    if (m_test) {
        m_test->requestStop();
        m_test.reset();
    }
    m_apiKeyInput.clear();
    m_awaitsStoredKey = false;
    m_isTesting = false;
    m_isStoring = false;
    m_status.reset();
}

void ProviderSettingsViewModel::setAPIKeyInput(const QString &text)
{
    if (text != m_apiKeyInput) {
        m_apiKeyInput = text;
        Q_EMIT changed();
    }
}

void ProviderSettingsViewModel::setModelInput(const QString &text)
{
    if (text != m_modelInput) {
        m_modelInput = text;
        m_with.settings.setModel(text, m_type);
        Q_EMIT changed();
    }
}

void ProviderSettingsViewModel::followStoredModel()
{
    // Blanks around a model that is being typed are not stored, and are no reason to take them away.
    const QString stored = m_with.settings.storedModel(m_type).value_or(QString());
    if (trimmedWhitespaceAndNewlines(m_modelInput) != stored) {
        m_modelInput = stored;
        Q_EMIT changed();
    }
}

void ProviderSettingsViewModel::setStatus(std::optional<Status> status)
{
    m_status = std::move(status);
    Q_EMIT changed();
}

void ProviderSettingsViewModel::saveKey()
{
    const QString key = trimmedWhitespaceAndNewlines(m_apiKeyInput).toString();
    m_isStoring = true;
    Q_EMIT changed();
    (void)Job::start([self = Weak(this), keyStatus = WeakStatus(&m_with.keyStatus), keychain = &m_with.keychain,
                      account = keychainAccount(m_type), key, visit = m_visit](std::stop_token) {
        return store(self, keyStatus, keychain, account, key, visit);
    });
}

void ProviderSettingsViewModel::clearKey()
{
    m_isStoring = true;
    Q_EMIT changed();
    (void)Job::start([self = Weak(this), keyStatus = WeakStatus(&m_with.keyStatus), keychain = &m_with.keychain,
                      account = keychainAccount(m_type),
                      visit = m_visit](std::stop_token) { return remove(self, keyStatus, keychain, account, visit); });
}

void ProviderSettingsViewModel::testKey()
{
    if (m_apiKeyInput.isEmpty() && !m_hasStoredKey) {
        setStatus(Status{.key = L10nKey::msgNoKeyToTest, .argument = {}});
        return;
    }
    m_isTesting = true;
    setStatus(std::nullopt);
    m_test = Job::start([self = Weak(this), with = m_with, type = m_type, key = m_apiKeyInput,
                         visit = m_visit](std::stop_token stop) { return test(self, with, type, key, visit, stop); });
}

void ProviderSettingsViewModel::finishStoring(quint64 visit, Status status, bool hasKey)
{
    m_awaitsStoredKey = false;
    m_hasStoredKey = hasKey;
    if (m_visit == visit) {
        m_isStoring = false;
        m_apiKeyInput.clear();
        m_status = std::move(status);
    }
    Q_EMIT changed();
}

void ProviderSettingsViewModel::failStoring(quint64 visit, Status status)
{
    if (m_visit == visit) {
        m_isStoring = false;
        setStatus(std::move(status));
    }
}

void ProviderSettingsViewModel::finishTest(quint64 visit, Status status)
{
    if (m_visit == visit) {
        m_isTesting = false;
        setStatus(std::move(status));
    }
}

QCoro::Task<void> ProviderSettingsViewModel::store(Weak self, WeakStatus keyStatus, const KeychainService *keychain,
                                                   QString account, QString key, quint64 visit)
{
    std::optional<Status> failure;
    try {
        co_await keychain->set(key, account);
    } catch (const std::exception &error) {
        failure = Status{L10nKey::msgSaveFailed, localizedDescription(error)};
    }
    // Also where the page was left while the store asked for its password: the badge is there still.
    if (!failure && keyStatus) {
        keyStatus->refresh();
    }
    if (!self) {
        co_return;
    }
    if (failure) {
        self->failStoring(visit, *failure);
    } else {
        self->finishStoring(visit, Status{.key = L10nKey::msgKeySaved, .argument = {}}, true);
    }
}

QCoro::Task<void> ProviderSettingsViewModel::remove(Weak self, WeakStatus keyStatus, const KeychainService *keychain,
                                                    QString account, quint64 visit)
{
    std::optional<Status> failure;
    try {
        co_await keychain->remove(account);
    } catch (const std::exception &error) {
        failure = Status{L10nKey::msgRemoveFailed, localizedDescription(error)};
    }
    if (!failure && keyStatus) {
        keyStatus->refresh();
    }
    if (!self) {
        co_return;
    }
    if (failure) {
        self->failStoring(visit, *failure);
    } else {
        self->finishStoring(visit, Status{.key = L10nKey::msgKeyRemoved, .argument = {}}, false);
    }
}

QCoro::Task<void> ProviderSettingsViewModel::test(Weak self, Collaborators with, AIProviderType type, QString key,
                                                  quint64 visit, std::stop_token stop)
{
    if (key.isEmpty()) {
        const QString account = keychainAccount(type);
        const std::optional<QString> stored = co_await with.keychain.get(account);
        key = stored.value_or(QString());
        if (!self || stop.stop_requested()) {
            co_return;
        }
        if (key.isEmpty()) {
            self->finishTest(visit, Status{.key = L10nKey::msgNoKeyToTest, .argument = {}});
            co_return;
        }
    }
    const std::unique_ptr<AIProvider> provider = with.providers.provider(type);
    std::optional<Status> failure;
    try {
        co_await provider->validateAPIKey(key, stop);
    } catch (const std::exception &error) {
        failure = Status{L10nKey::msgKeyInvalid, localizedDescription(error)};
    }
    if (self) {
        self->finishTest(visit, failure ? *failure : Status{.key = L10nKey::msgKeyValid, .argument = {}});
    }
}

} // namespace orvesa
