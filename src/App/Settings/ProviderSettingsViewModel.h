#pragma once

// What one service's section of the settings window knows and does: its API key and its model.
//
// Holds no widgets. The stored key never comes here, but for a test of it, for as long as the test runs. Operations
// that wait for the key store or the service return at once and end in changed(); those of a model that is gone, or
// that was loaded anew, change nothing any more. Main thread only; collaborators must outlive it.

#include "AI/AIProviderType.h"
#include "App/Job.h"
#include "Core/L10nKey.h"

#include <QObject>
#include <QPointer>

#include <optional>

namespace orvesa {

class AIProviderSource;
class KeychainService;
class ProviderKeyStatus;
class SettingsStore;

class ProviderSettingsViewModel final : public QObject {
    Q_OBJECT

public:
    struct Collaborators {
        SettingsStore &settings;
        const KeychainService &keychain;
        const AIProviderSource &providers;
        ProviderKeyStatus &keyStatus;
    };

    enum class Tone { neutral, success, failure };

    ProviderSettingsViewModel(AIProviderType type, const Collaborators &collaborators, QObject *parent = nullptr);
    ~ProviderSettingsViewModel() override;

    [[nodiscard]] AIProviderType type() const { return m_type; }
    [[nodiscard]] const QString &apiKeyInput() const { return m_apiKeyInput; }
    [[nodiscard]] const QString &modelInput() const { return m_modelInput; }
    [[nodiscard]] bool hasStoredKey() const { return m_hasStoredKey; }
    [[nodiscard]] bool isTesting() const { return m_isTesting; }
    /// The last feedback in the interface language.
    [[nodiscard]] std::optional<QString> statusMessage() const;
    [[nodiscard]] Tone statusTone() const;

    [[nodiscard]] bool canSave() const;
    [[nodiscard]] bool canTest() const;
    [[nodiscard]] bool canClear() const;

    /// The section appears: nothing typed, no feedback, and what is stored. The key store is asked for all sections in
    /// one look, and once it has refused, not again before the window is opened anew or a key was saved.
    void load();
    /// The section goes away: a test ends, and what was typed is forgotten.
    void leave();
    void setAPIKeyInput(const QString &text);
    /// Stored at once; a blank one stands for the default model.
    void setModelInput(const QString &text);
    void saveKey();
    void testKey();
    void clearKey();

Q_SIGNALS:
    void changed();

private:
    using Weak = QPointer<ProviderSettingsViewModel>;
    using WeakStatus = QPointer<ProviderKeyStatus>;

    struct Status {
        L10nKey key;
        std::optional<QString> argument; ///< of a text that takes one
    };

    void reset();
    void setStatus(std::optional<Status> status);
    void followStoredModel();
    void takeStoredKey(AIProviderType type, bool hasKey);
    void forgetStoredKey();
    void finishStoring(quint64 visit, Status status, bool hasKey);
    void failStoring(quint64 visit, Status status);
    void finishTest(quint64 visit, Status status);

    static QCoro::Task<void> store(Weak self, WeakStatus keyStatus, const KeychainService *keychain, QString account,
                                   QString key, quint64 visit);
    static QCoro::Task<void> remove(Weak self, WeakStatus keyStatus, const KeychainService *keychain, QString account,
                                    quint64 visit);
    static QCoro::Task<void> test(Weak self, Collaborators with, AIProviderType type, QString key, quint64 visit,
                                  std::stop_token stop);

    AIProviderType m_type;
    Collaborators m_with;
    QString m_apiKeyInput;
    QString m_modelInput;
    bool m_hasStoredKey = false;
    bool m_isTesting = false;
    bool m_isStoring = false;
    std::optional<Status> m_status;
    std::optional<Job> m_test;
    bool m_awaitsStoredKey = false; ///< from load() until somebody knows whether there is one
    quint64 m_visit = 0;            ///< counts load() and leave(): answers to an earlier visit are too late
};

} // namespace orvesa
