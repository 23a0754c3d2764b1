#pragma once

// Services whose answers a test gives when it wants to. Main thread.

#include "AI/AIProviderSource.h"
#include "Models/AppError.h"

#include <coroutine>
#include <memory>
#include <optional>
#include <vector>

namespace orvesa {

class FakeProviders final : public AIProviderSource {
public:
    /// One call of generate(). Lives until the source goes.
    struct Call {
        QString text;
        AITask task;
        AIProviderConfig config;
        std::stop_token stop;
        std::optional<QString> answer;
        std::optional<AppError> failure;
        std::coroutine_handle<> waiting;

        /// Ends the call with an answer, or with apiRequestFailed.
        void succeed(const QString &result);
        void fail(const QString &message);
        void fail(const AppError &error);
    };

    FakeProviders() = default;
    /// Calls that were never answered end with a failure, so that nobody waits for ever.
    ~FakeProviders() override;
    Q_DISABLE_COPY_MOVE(FakeProviders)

    [[nodiscard]] std::unique_ptr<AIProvider> provider(AIProviderType type) const override;
    void preconnect(AIProviderType type) const override;

    [[nodiscard]] const std::vector<std::shared_ptr<Call>> &calls() const { return *m_calls; }
    [[nodiscard]] const std::vector<AIProviderType> &preconnected() const { return m_preconnected; }

private:
    std::shared_ptr<std::vector<std::shared_ptr<Call>>> m_calls =
        std::make_shared<std::vector<std::shared_ptr<Call>>>();
    mutable std::vector<AIProviderType> m_preconnected;
};

} // namespace orvesa
