#pragma once

// The key of a menu item as toolkits write it on the accessibility bus, in the terms of the macOS attributes. Pure
// functions, any thread.

#include <QString>

#include <optional>

namespace orvesa {

struct ATSPIAccelerator {
    QString character;
    /// 0 for Control alone, this desktop's command key; plus 1 for Shift, 2 for Alt, 4 for Super, 8 without Control.
    qint64 modifiers = 0;

    bool operator==(const ATSPIAccelerator &) const = default;

    /// From an action's key binding, "mnemonic;path of mnemonics;shortcut" or the shortcut alone, which is written
    /// "<Primary><Shift>c" or "Ctrl+Shift+C". Nothing when there is no shortcut.
    [[nodiscard]] static std::optional<ATSPIAccelerator> fromKeyBinding(const QString &binding);
};

} // namespace orvesa
