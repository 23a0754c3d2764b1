#pragma once

// For which services an API key is stored: what the sidebar's badge and the sections of the services tell.
//
// Reading the keys is what makes an earlier identity's keys usable: each one that is found only there is copied to the
// current identity. The key store answers when it can, so the status is unknown until its first answer, and after one
// that it refused. It may ask for its password for every key that it is asked for, so the window asks in this one
// place, one key after the other, and a refusal ends that. One object for the program, made with the settings window.
// Main thread only; the key store must outlive it.

#include "AI/AIProviderType.h"

#include <QCoroTask>

#include <QObject>
#include <QPointer>

#include <map>
#include <optional>

namespace orvesa {

class KeychainService;

class ProviderKeyStatus final : public QObject {
    Q_OBJECT

public:
    /// Begins with a refresh.
    explicit ProviderKeyStatus(const KeychainService &keychain, QObject *parent = nullptr);
    ~ProviderKeyStatus() override;

    [[nodiscard]] bool hasAnyKey() const { return m_answer == Answer::someKey; }
    /// Whether it is certain that there is no key that could be used; so it is where no key store runs. False while the
    /// key store has not answered yet, and when it refused to.
    [[nodiscard]] bool hasNoKey() const { return m_answer == Answer::noKey; }
    /// What the last look, or the one under way, has found out about one service; nothing where it was not told.
    [[nodiscard]] std::optional<bool> hasKey(AIProviderType type) const;

    [[nodiscard]] bool isRefreshing() const { return m_finished != m_refreshes; }
    /// Reads every service's key anew. What an earlier refresh still finds out no longer counts.
    void refresh();
    /// The same, but leaves a refresh that is under way alone, and does not ask a key store again that refused the last
    /// time: who has declined to unlock it is not to be asked for every page that is chosen.
    void look();

Q_SIGNALS:
    void changed();
    /// One service's key was looked for; every refresh tells of each until the key store refuses. One that cannot be
    /// read is none.
    void looked(AIProviderType type, bool hasKey);
    /// The look has ended before it came to all services, since the key store refused or does not run.
    void refused();

private:
    enum class Answer { unknown, noKey, someKey };
    enum class Certainty { whole, partial };
    using Weak = QPointer<ProviderKeyStatus>;

    void setAnswer(Answer answer);
    void take(AIProviderType type, bool hasKey);
    void finish(quint64 refresh, std::optional<qint32> refusal, Certainty certainty);
    static QCoro::Task<void> readKeys(Weak self, const KeychainService *keychain, quint64 refresh);

    const KeychainService &m_keychain;
    Answer m_answer = Answer::unknown;
    std::map<AIProviderType, bool> m_found; ///< by the last refresh
    bool m_wasRefused = false;
    quint64 m_refreshes = 0;
    quint64 m_finished = 0; ///< the last refresh that came to its end
};

} // namespace orvesa
