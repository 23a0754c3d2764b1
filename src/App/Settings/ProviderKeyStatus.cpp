#include "App/Settings/ProviderKeyStatus.h"

#include "App/Job.h"
#include "Core/KeychainError.h"
#include "Core/KeychainService.h"
#include "Platform/KeyStorePort.h"

#include <algorithm>

namespace orvesa {

ProviderKeyStatus::ProviderKeyStatus(const KeychainService &keychain, QObject *parent)
    : QObject(parent), m_keychain(keychain)
{
    refresh();
}

ProviderKeyStatus::~ProviderKeyStatus() = default;

std::optional<bool> ProviderKeyStatus::hasKey(AIProviderType type) const
{
    const auto found = m_found.find(type);
    return found == m_found.end() ? std::nullopt : std::optional(found->second);
}

void ProviderKeyStatus::refresh()
{
    ++m_refreshes;
    m_found.clear();
    m_wasRefused = false;
    (void)Job::start([self = Weak(this), keychain = &m_keychain, refresh = m_refreshes](std::stop_token) {
        return readKeys(self, keychain, refresh);
    });
}

void ProviderKeyStatus::look()
{
    if (!isRefreshing() && !m_wasRefused) {
        refresh();
    }
}

void ProviderKeyStatus::setAnswer(Answer answer)
{
    if (answer != m_answer) {
        m_answer = answer;
        Q_EMIT changed();
    }
}

void ProviderKeyStatus::take(AIProviderType type, bool hasKey)
{
    m_found.insert_or_assign(type, hasKey);
    // Told at once; the other keys are read all the same, since reading is what carries them over.
    if (hasKey) {
        setAnswer(Answer::someKey);
    }
    Q_EMIT looked(type, hasKey);
}

void ProviderKeyStatus::finish(quint64 refresh, std::optional<qint32> refusal, Certainty certainty)
{
    m_finished = refresh;
    // A key store that does not run asks nobody, has nothing, and may run the next time.
    m_wasRefused = refusal && *refusal != KeyStoreStatus::notAvailable;
    const bool hasFound = std::ranges::any_of(m_found, [](const auto &found) { return found.second; });
    if (!hasFound) {
        setAnswer(m_wasRefused || certainty == Certainty::partial ? Answer::unknown : Answer::noKey);
    }
    if (refusal) {
        Q_EMIT refused();
    }
}

QCoro::Task<void> ProviderKeyStatus::readKeys(Weak self, const KeychainService *keychain, quint64 refresh)
{
    std::optional<qint32> refusal;
    Certainty certainty = Certainty::whole;
    for (const AIProviderType type : allCases<AIProviderType>()) {
        bool hasKey = false;
        try {
            hasKey = co_await keychain->hasValue(keychainAccount(type), KeychainService::Failures::thrown);
        } catch (const KeychainError &error) {
            if (error.status() != KeyStoreStatus::authorizationFailed) {
                refusal = error.status();
                break;
            }
            // This one cannot be read, and nobody was asked anything.
            certainty = Certainty::partial;
        }
        if (!self || self->m_refreshes != refresh) {
            co_return;
        }
        self->take(type, hasKey);
    }
    if (self && self->m_refreshes == refresh) {
        self->finish(refresh, refusal, certainty);
    }
}

} // namespace orvesa
