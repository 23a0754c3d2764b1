#pragma once

// Menu bars of applications and what their items say about themselves. Main thread.

#include "Platform/linux/ATSPIAccelerator.h"
#include "Platform/linux/ATSPIClient.h"

#include <QString>

#include <optional>
#include <vector>

namespace orvesa {

/// A menu or an item of one.
struct ATSPIMenuItem {
    ATSPIReference element{};
    QString identifier{};
    std::optional<ATSPIAccelerator> accelerator{};
    bool hasChildren = false;

    /// Whether the program itself calls it the copy command.
    [[nodiscard]] bool isNamedCopy() const;
};

class ATSPIMenus final {
public:
    explicit ATSPIMenus(ATSPIClient &client);

    /// The menu bar in the window, if the application has one whose items can be trusted to tell whether there is
    /// something to copy.
    [[nodiscard]] std::optional<ATSPIReference> menuBar(const ATSPIReference &window);
    /// What is in a menu or a menu bar. Everything about all of them is asked for at once.
    [[nodiscard]] std::vector<ATSPIMenuItem> items(const ATSPIReference &menu);
    /// Nothing where the item did not tell.
    [[nodiscard]] std::optional<bool> isEnabled(const ATSPIReference &item);
    /// An element's own copy command, by its place among the element's actions; without one it cannot be used now.
    struct CopyCommand {
        std::optional<int> action;
    };
    /// Nothing for an element that has no such command at all.
    [[nodiscard]] std::optional<CopyCommand> copyCommand(const ATSPIReference &element);

private:
    [[nodiscard]] bool isTrusted(const QString &busName);

    ATSPIClient &m_client;
};

} // namespace orvesa
