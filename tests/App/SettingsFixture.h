#pragma once

// What the settings window needs, over fakes. The key store and the services answer when a test lets them. Main thread.

#include "AI/AIProviderSource.h"
#include "App/Settings/ProviderKeyStatus.h"
#include "App/Settings/SettingsServices.h"
#include "Core/HotKeyRecordingState.h"
#include "Core/KeychainService.h"
#include "Core/SettingsStore.h"
#include "fakes/FakeAccessibilityTrust.h"
#include "fakes/FakeKeyMonitor.h"
#include "fakes/FakeKeyStore.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/Gate.h"

#include <memory>
#include <optional>
#include <vector>

namespace orvesa {

/// Services whose verdict on a key a test sets, and holds back by closing the gate.
class FakeKeyTests final : public AIProviderSource {
public:
    struct Call {
        AIProviderType type;
        QString key;
        std::stop_token stop;
    };

    FakeKeyTests();
    ~FakeKeyTests() override;
    Q_DISABLE_COPY_MOVE(FakeKeyTests)

    [[nodiscard]] std::unique_ptr<AIProvider> provider(AIProviderType type) const override;
    void preconnect(AIProviderType) const override {}

    /// Later tests end with this message of the service; without one, with success.
    void setRefusal(const std::optional<QString> &message) { m_state->refusal = message; }
    [[nodiscard]] Gate &gate() { return m_state->gate; }
    [[nodiscard]] const std::vector<Call> &calls() const { return m_state->calls; }

private:
    struct State {
        std::optional<QString> refusal;
        Gate gate;
        std::vector<Call> calls;
    };
    class Provider;

    std::shared_ptr<State> m_state;
};

struct SettingsOnFakes {
    [[nodiscard]] SettingsServices services()
    {
        return {settings, keychain, providers, trust, recording, keyMonitor, workspace};
    }

    [[nodiscard]] static CustomPrompt prompt(const QString &name, const QString &text,
                                             const std::optional<KeyCombo> &combo = {});

    FakeUserDefaults defaults;
    FakePreferredLanguages languages;
    SettingsStore settings{defaults, languages};
    FakeKeyStore keyStore;
    KeychainService keychain{
        keyStore, QStringLiteral("current"), {QStringLiteral("first-legacy"), QStringLiteral("second-legacy")}};
    FakeKeyTests providers;
    FakeAccessibilityTrust trust;
    HotKeyRecordingState recording;
    FakeKeyMonitor keyMonitor;
    FakeWorkspace workspace;
};

} // namespace orvesa
