#include "App/SettingsFixture.h"

#include "Models/AppError.h"

#include <utility>

namespace orvesa {

class FakeKeyTests::Provider final : public AIProvider {
public:
    Provider(AIProviderType type, std::shared_ptr<State> state) : m_type(type), m_state(std::move(state)) {}

    [[nodiscard]] AIProviderType providerType() const override { return m_type; }

    [[nodiscard]] QCoro::Task<QString> generate(QString, AITask, AIProviderConfig, std::stop_token) const override
    {
        co_return QString();
    }

    [[nodiscard]] QCoro::Task<void> validateAPIKey(QString key, std::stop_token stop) const override
    {
        const std::shared_ptr<State> state = m_state;
        state->calls.push_back(Call{m_type, key, stop});
        co_await state->gate.passed();
        if (stop.stop_requested()) {
            throw AppError::apiRequestFailed(QStringLiteral("stopped"));
        }
        if (state->refusal) {
            throw AppError::apiRequestFailed(*state->refusal);
        }
    }

private:
    AIProviderType m_type;
    std::shared_ptr<State> m_state;
};

FakeKeyTests::FakeKeyTests() : m_state(std::make_shared<State>()) {}

FakeKeyTests::~FakeKeyTests()
{
    // Nobody waits for ever.
    const std::shared_ptr<State> state = m_state;
    state->gate.open();
}

std::unique_ptr<AIProvider> FakeKeyTests::provider(AIProviderType type) const
{
    return std::make_unique<Provider>(type, m_state);
}

CustomPrompt SettingsOnFakes::prompt(const QString &name, const QString &text, const std::optional<KeyCombo> &combo)
{
    CustomPrompt result;
    result.name = name;
    result.promptTemplate = text;
    result.hotKey = combo;
    return result;
}

} // namespace orvesa
