#pragma once

// Turns a task and the selected text into the one user message that is sent to a service. Stateless, any thread.

#include "Models/AITask.h"

#include <QString>

namespace orvesa {

class PromptTemplateService final {
public:
    /// The text is inserted exactly as it is.
    [[nodiscard]] QString prompt(const AITask &task, const QString &text) const;
};

} // namespace orvesa
