#pragma once

// One service's section of the settings window over fakes, and the status that it takes its key from. Main thread.

#include "App/Settings/ProviderKeyStatus.h"
#include "App/Settings/ProviderSettingsViewModel.h"
#include "App/SettingsFixture.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace orvesa {

class ProviderSettingsFixture : public testing::Test, protected SettingsOnFakes {
protected:
    using Operation = FakeKeyStore::Operation;
    using Tone = ProviderSettingsViewModel::Tone;

    void storeKey(const QByteArray &secret, const QString &service = QStringLiteral("current"))
    {
        keyStore.setItem(service, QStringLiteral("openai_api_key"), secret);
    }

    [[nodiscard]] std::optional<QByteArray> storedKey() const
    {
        return keyStore.item(QStringLiteral("current"), QStringLiteral("openai_api_key"));
    }

    [[nodiscard]] std::unique_ptr<ProviderSettingsViewModel> makeModel(AIProviderType type)
    {
        return std::make_unique<ProviderSettingsViewModel>(
            type, ProviderSettingsViewModel::Collaborators{settings, keychain, providers, keyStatus});
    }

    ProviderKeyStatus keyStatus{keychain};
    std::unique_ptr<ProviderSettingsViewModel> model = makeModel(AIProviderType::openAI);
};

} // namespace orvesa
