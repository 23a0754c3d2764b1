#pragma once

// A keyboard shortcut: a key, its modifiers and the text on the key. Value type, any thread.

#include "Models/KeyPress.h"
#include "Platform/ModifierBits.h"

#include <nlohmann/json_fwd.hpp>

#include <QString>

#include <optional>

namespace orvesa {

struct KeyCombo {
    quint32 keyCode = 0;         ///< macOS virtual key code
    quint32 carbonModifiers = 0; ///< mask of CarbonModifier bits; no other bit is ever set
    QString keyLabel;            ///< the key's face, for example "D", "F5", "Space"

    bool operator==(const KeyCombo &) const = default;

    /// The combination of a key press, or nothing when that press may not become a shortcut.
    [[nodiscard]] static std::optional<KeyCombo> fromKeyPress(const KeyPress &press);

    /// Same key and modifiers, whatever the labels say.
    [[nodiscard]] bool conflictsWith(const KeyCombo &other) const;
    /// The modifiers as symbols, always in the order control, option, shift, command.
    [[nodiscard]] QString modifierSymbols() const;
    /// The symbols followed by the label, for example "⌥D".
    [[nodiscard]] QString displayText() const;
};

[[nodiscard]] nlohmann::ordered_json keyComboToJSON(const KeyCombo &combo);
/// Throws DecodingError unless all three members are there with their types.
[[nodiscard]] KeyCombo keyComboFromJSON(const nlohmann::ordered_json &json);

} // namespace orvesa
