#pragma once

// What another process may ask the running utility for, and the names in which it asks: the one table of them, for the
// process that asks, the one that is asked and the help. Pure functions, any thread.

#include "Models/HotKeyAction.h"

#include <QString>

#include <optional>
#include <variant>

namespace orvesa {

struct OpenSettings {
    bool operator==(const OpenSettings &) const = default;
};
struct RunPrompt {
    QString nameOrID; ///< never empty; whether there is such a prompt is the utility's to say
    bool operator==(const RunPrompt &) const = default;
};
using OutsideAction = std::variant<HotKeyAction, OpenSettings, RunPrompt>;

/// Nothing when no action has the name.
[[nodiscard]] std::optional<OutsideAction> outsideAction(const QString &name);

/// All names, for people to read.
[[nodiscard]] QString outsideActionNames();

} // namespace orvesa
