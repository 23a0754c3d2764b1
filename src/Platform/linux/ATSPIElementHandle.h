#pragma once

// What an accessibility element of the port is on this desktop. Immutable, main thread.

#include "Platform/AccessibilityElementsPort.h"
#include "Platform/linux/ATSPIClient.h"

#include <memory>
#include <variant>

namespace orvesa {

class ATSPIElementHandle final : public AccessibilityElementHandle {
public:
    struct SystemWide {};
    struct Application {
        qint64 processIdentifier = 0;
    };
    using Target = std::variant<SystemWide, Application, ATSPIReference>;

    /// Elements reached from one another share the client and so its budget of waiting time.
    ATSPIElementHandle(Target target, std::shared_ptr<ATSPIClient> client);

    [[nodiscard]] const Target &target() const { return m_target; }
    [[nodiscard]] const std::shared_ptr<ATSPIClient> &client() const { return m_client; }

private:
    Target m_target;
    std::shared_ptr<ATSPIClient> m_client;
};

} // namespace orvesa
