#include "App/Settings/ProviderKeyStatus.h"

#include "AI/AIProviderType.h"
#include "App/Job.h"
#include "Core/KeychainService.h"

namespace orvesa {

ProviderKeyStatus::ProviderKeyStatus(const KeychainService &keychain, QObject *parent)
    : QObject(parent), m_keychain(keychain)
{
    refresh();
}

ProviderKeyStatus::~ProviderKeyStatus() = default;

void ProviderKeyStatus::refresh()
{
    ++m_refreshes;
    (void)Job::start([self = Weak(this), keychain = &m_keychain, refresh = m_refreshes](std::stop_token) {
        return readKeys(self, keychain, refresh);
    });
}

void ProviderKeyStatus::setAnswer(Answer answer)
{
    if (answer != m_answer) {
        m_answer = answer;
        Q_EMIT changed();
    }
}

QCoro::Task<void> ProviderKeyStatus::readKeys(Weak self, const KeychainService *keychain, quint64 refresh)
{
    bool found = false;
    for (const AIProviderType type : allCases<AIProviderType>()) {
        const QString account = keychainAccount(type);
        const bool hasKey = co_await keychain->hasValue(account);
        if (!self || self->m_refreshes != refresh) {
            co_return;
        }
        // Told at once; the other keys are read all the same, since reading is what carries them over.
        if (hasKey && !found) {
            found = true;
            self->setAnswer(Answer::someKey);
        }
    }
    self->m_finished = refresh;
    if (!found) {
        self->setAnswer(Answer::noKey);
    }
}

} // namespace orvesa
