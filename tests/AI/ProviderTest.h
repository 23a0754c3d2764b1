#pragma once

// The ground of the tests of all providers: a key store in memory, a loopback service in the service's place.

#include "AI/AIProviderFactory.h"
#include "AI/HTTPTest.h"
#include "Core/KeychainService.h"
#include "fakes/FakeKeyStore.h"
#include "service/ServiceAnswers.h"

#include <array>

namespace orvesa {

class ProviderTest : public HTTPTest {
protected:
    [[nodiscard]] static ServiceAddresses addressesAt(const QString &origin)
    {
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("OPENAI_BASE_URL"), origin + QStringLiteral("/v1"));
        environment.insert(QStringLiteral("XAI_BASE_URL"), origin + QStringLiteral("/v1"));
        environment.insert(QStringLiteral("ANTHROPIC_BASE_URL"), origin);
        environment.insert(QStringLiteral("GOOGLE_GEMINI_BASE_URL"), origin);
        return ServiceAddresses(environment);
    }

    [[nodiscard]] static AIProviderConfig configFor(const QString &model, bool thinking = false)
    {
        AIProviderConfig config;
        config.model = model;
        config.thinkingEnabled = thinking;
        return config;
    }

    void storeKey(AIProviderType type, const QByteArray &key)
    {
        m_store.setItem(QStringLiteral("service"), keychainAccount(type), key);
    }

    [[nodiscard]] Outcome<QString> generate(AIProviderType type, const AIProviderConfig &config,
                                            const QString &text = QStringLiteral("abc"))
    {
        const auto provider = m_factory.provider(type);
        return outcome(provider->generate(text, CustomTask{QStringLiteral("n"), QStringLiteral("Do: {text}")}, config));
    }

    /// What the provider makes of that answer's body.
    [[nodiscard]] Outcome<QString> generated(AIProviderType type, const QByteArray &body)
    {
        storeKey(type, "key");
        m_service.setScript({Response::json(body)});
        return generate(type, configFor(QStringLiteral("m")));
    }

    [[nodiscard]] bool isInvalid(AIProviderType type, const QByteArray &body)
    {
        return generated(type, body).hasKind(AppError::Kind::invalidAPIResponse);
    }

    /// The body that the last generation sent.
    [[nodiscard]] QByteArray sentBody(AIProviderType type, const QString &model, bool thinking)
    {
        storeKey(type, "key");
        m_service.setResponder(
            [](const Request &request) { return service::protocolResponse(request, QStringLiteral("fine")); });
        const auto result = generate(type, configFor(model, thinking));
        EXPECT_EQ(result.value, QStringLiteral("fine"));
        return m_service.requests().back().body;
    }

    FakeKeyStore m_store;
    KeychainService m_keychain{m_store, QStringLiteral("service"), {}};
    AIProviderFactory m_factory{m_keychain, m_client, addressesAt(m_service.address())};
};

} // namespace orvesa
