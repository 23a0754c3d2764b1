#pragma once

// What an accessibility element of the port is on this desktop. Immutable, main thread.

#include "Platform/AccessibilityElementsPort.h"
#include "Platform/linux/ATSPIClient.h"
#include "Platform/linux/ATSPIMenus.h"

#include <memory>
#include <variant>
#include <vector>

namespace orvesa {

class ATSPIElementHandle final : public AccessibilityElementHandle {
public:
    struct SystemWide {};
    struct Application {
        qint64 processIdentifier = 0;
    };
    /// An element that no program has: a menu bar with what macOS has in front of a program's own menus, or a menu
    /// for a command that is in none.
    struct Made {
        std::vector<AccessibilityElement> children;
    };
    /// An element's own copy command, as an item of a menu.
    struct Command {
        ATSPIReference element;
        bool isEnabled = false;
    };
    /// A terminal that is not on the accessibility bus, as the element that has the focus.
    struct Terminal {
        qint64 processIdentifier = 0;
    };
    using Target = std::variant<SystemWide, Application, ATSPIReference, ATSPIMenuItem, Made, Command, Terminal>;

    /// Elements reached from one another share the client and so its budget of waiting time.
    ATSPIElementHandle(Target target, std::shared_ptr<ATSPIClient> client);

    [[nodiscard]] const Target &target() const { return m_target; }
    [[nodiscard]] const std::shared_ptr<ATSPIClient> &client() const { return m_client; }

private:
    Target m_target;
    std::shared_ptr<ATSPIClient> m_client;
};

} // namespace orvesa
