#include "App/FakeProviders.h"

#include <utility>

namespace orvesa {

namespace {

using Calls = std::vector<std::shared_ptr<FakeProviders::Call>>;

class Answer final {
public:
    explicit Answer(FakeProviders::Call &call) : m_call(call) {}
    [[nodiscard]] bool await_ready() const { return m_call.answer || m_call.failure; }
    void await_suspend(std::coroutine_handle<> waiting) { m_call.waiting = waiting; }
    void await_resume() const {}

private:
    FakeProviders::Call &m_call;
};

class FakeProvider final : public AIProvider {
public:
    FakeProvider(AIProviderType type, std::shared_ptr<Calls> calls) : m_type(type), m_calls(std::move(calls)) {}

    [[nodiscard]] AIProviderType providerType() const override { return m_type; }

    [[nodiscard]] QCoro::Task<QString> generate(QString text, AITask task, AIProviderConfig config,
                                                std::stop_token stop) const override
    {
        const auto call = std::make_shared<FakeProviders::Call>();
        call->text = text;
        call->task = task;
        call->config = config;
        call->stop = stop;
        m_calls->push_back(call);
        co_await Answer(*call);
        if (call->failure) {
            throw AppError(*call->failure);
        }
        co_return *call->answer;
    }

    [[nodiscard]] QCoro::Task<void> validateAPIKey(QString, std::stop_token) const override { co_return; }

private:
    AIProviderType m_type;
    std::shared_ptr<Calls> m_calls;
};

} // namespace

void FakeProviders::Call::succeed(const QString &result)
{
    answer = result;
    if (waiting) {
        std::exchange(waiting, nullptr).resume();
    }
}

void FakeProviders::Call::fail(const QString &message)
{
    fail(AppError::apiRequestFailed(message));
}

void FakeProviders::Call::fail(const AppError &error)
{
    failure = error;
    if (waiting) {
        std::exchange(waiting, nullptr).resume();
    }
}

FakeProviders::~FakeProviders()
{
    const Calls calls = *m_calls;
    for (const std::shared_ptr<Call> &call : calls) {
        if (call->waiting) {
            call->fail(QString());
        }
    }
}

std::unique_ptr<AIProvider> FakeProviders::provider(AIProviderType type) const
{
    return std::make_unique<FakeProvider>(type, m_calls);
}

void FakeProviders::preconnect(AIProviderType type) const
{
    m_preconnected.push_back(type);
}

} // namespace orvesa
