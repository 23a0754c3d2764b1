#pragma once

// The interface of a language-model service.
//
// Providers are small immutable values without connection, cache or key between calls; a caller keeps one alive until
// the operation it started has ended. Operations throw AppError only. A stop request aborts the transfer, which then
// fails like any other broken transfer. Main thread.

#include "AI/AIProviderConfig.h"
#include "Models/AITask.h"

#include <QCoroTask>

#include <QString>

#include <stop_token>

namespace orvesa {

class AIProvider {
public:
    virtual ~AIProvider() = default;

    [[nodiscard]] virtual AIProviderType providerType() const = 0;

    /// Sends the task's prompt for the text as one user message and gives the answer without outer blanks.
    [[nodiscard]] virtual QCoro::Task<QString> generate(QString text, AITask task, AIProviderConfig config,
                                                        std::stop_token stop = {}) const = 0;

    /// Checks the given key (not the stored one) by reading the service's list of models. Returning means it is valid.
    [[nodiscard]] virtual QCoro::Task<void> validateAPIKey(QString key, std::stop_token stop = {}) const = 0;
};

} // namespace orvesa
