#pragma once

// The selected text of one element. Main thread.

#include "Platform/linux/ATSPIClient.h"

#include <QString>

#include <optional>

namespace orvesa {

class ATSPISelection final {
public:
    explicit ATSPISelection(ATSPIClient &client);

    /// The whole selection, or nothing: also for password fields, for several selections, for a selection that goes on
    /// in neighbouring elements, and for one that holds embedded objects, whose text would be missing.
    [[nodiscard]] std::optional<QString> read(const ATSPIReference &element);

private:
    [[nodiscard]] int selectionCount(const ATSPIReference &element);
    /// Whether the selection may reach over the element's ends, and does.
    [[nodiscard]] bool goesOn(const ATSPIReference &element, int start, int end);

    ATSPIClient &m_client;
};

} // namespace orvesa
