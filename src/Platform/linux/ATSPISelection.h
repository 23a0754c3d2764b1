#pragma once

// The selected text of one element. Main thread.

#include "Platform/linux/ATSPIClient.h"

#include <QString>

#include <optional>
#include <vector>

namespace orvesa {

class ATSPISelection final {
public:
    /// What an element says of itself and of its selection: its role, the number of selections, the first selection.
    using Answers = std::vector<std::optional<QVariantList>>;

    explicit ATSPISelection(ATSPIClient &client);

    /// The questions to which those are the answers.
    [[nodiscard]] static std::vector<ATSPIClient::Call> questions(const ATSPIReference &element);
    /// The whole selection, or nothing: also for password fields, for several selections, for a selection that goes on
    /// in neighbouring elements, and for one that holds embedded objects, whose text would be missing.
    [[nodiscard]] std::optional<QString> read(const ATSPIReference &element);
    /// The same where the element has answered already.
    [[nodiscard]] std::optional<QString> read(const ATSPIReference &element, const Answers &answers);

private:
    [[nodiscard]] int selectionCount(const ATSPIReference &element);
    /// Whether the selection may reach over the element's ends, and does.
    [[nodiscard]] bool goesOn(const ATSPIReference &element, int start, int end);

    ATSPIClient &m_client;
};

} // namespace orvesa
