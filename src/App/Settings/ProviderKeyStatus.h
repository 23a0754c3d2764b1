#pragma once

// Whether an API key is stored for any service: what the sidebar's badge tells.
//
// Reading the keys is what makes an earlier identity's keys usable: each one that is found only there is copied to the
// current identity. The key store answers when it can, so the status is unknown until its first answer. One object for
// the program, made with the settings window. Main thread only; the key store must outlive it.

#include <QCoroTask>

#include <QObject>
#include <QPointer>

namespace orvesa {

class KeychainService;

class ProviderKeyStatus final : public QObject {
    Q_OBJECT

public:
    /// Begins with a refresh.
    explicit ProviderKeyStatus(const KeychainService &keychain, QObject *parent = nullptr);
    ~ProviderKeyStatus() override;

    [[nodiscard]] bool hasAnyKey() const { return m_answer == Answer::someKey; }
    /// Whether it is certain that there is no key. False while the key store has not answered yet.
    [[nodiscard]] bool hasNoKey() const { return m_answer == Answer::noKey; }

    [[nodiscard]] bool isRefreshing() const { return m_finished != m_refreshes; }
    /// Reads every service's key anew. What an earlier refresh still finds out no longer counts.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    enum class Answer { unknown, noKey, someKey };
    using Weak = QPointer<ProviderKeyStatus>;

    void setAnswer(Answer answer);
    static QCoro::Task<void> readKeys(Weak self, const KeychainService *keychain, quint64 refresh);

    const KeychainService &m_keychain;
    Answer m_answer = Answer::unknown;
    quint64 m_refreshes = 0;
    quint64 m_finished = 0; ///< the last refresh that came to its end
};

} // namespace orvesa
