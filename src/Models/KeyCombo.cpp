#include "Models/KeyCombo.h"

#include "Models/JSONReading.h"

#include <nlohmann/json.hpp>

#include <QList>

#include <algorithm>
#include <array>
#include <string_view>

namespace orvesa {

namespace {

namespace Key {
constexpr auto keyCode = "keyCode";
constexpr auto carbonModifiers = "carbonModifiers";
constexpr auto keyLabel = "keyLabel";
} // namespace Key

/// F1 to F12, the only keys that may be a shortcut without command, option or control.
constexpr std::array<quint32, 12> functionKeyCodes{122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111};

struct SpecialKeyLabel {
    quint32 keyCode;
    std::u16string_view label;
};

constexpr std::array<SpecialKeyLabel, 26> specialKeyLabels{{
    {49, u"Space"}, {36, u"↩"},   {76, u"⌤"},    {48, u"⇥"},    {51, u"⌫"},    {117, u"⌦"}, {123, u"←"},
    {124, u"→"},    {126, u"↑"},  {125, u"↓"},   {115, u"↖"},   {119, u"↘"},   {116, u"⇞"}, {121, u"⇟"},
    {122, u"F1"},   {120, u"F2"}, {99, u"F3"},   {118, u"F4"},  {96, u"F5"},   {97, u"F6"}, {98, u"F7"},
    {100, u"F8"},   {101, u"F9"}, {109, u"F10"}, {103, u"F11"}, {111, u"F12"},
}};

struct ModifierRow {
    KeyModifier modifier = KeyModifier::control;
    quint32 carbon = 0;
    QChar symbol;
};

/// In the order in which symbols are shown.
constexpr std::array<ModifierRow, 4> modifierRows{{
    {KeyModifier::control, CarbonModifier::control, u'⌃'},
    {KeyModifier::option, CarbonModifier::option, u'⌥'},
    {KeyModifier::shift, CarbonModifier::shift, u'⇧'},
    {KeyModifier::command, CarbonModifier::command, u'⌘'},
}};

quint32 carbonMask(KeyModifiers modifiers)
{
    quint32 mask = 0;
    for (const ModifierRow &row : modifierRows) {
        if (modifiers.testFlag(row.modifier)) {
            mask |= row.carbon;
        }
    }
    return mask;
}

/// Controls have no face to print on a key, and neither have the invisible format characters.
bool hasNoFace(char32_t scalar)
{
    const QChar::Category category = QChar::category(scalar);
    return category == QChar::Other_Control || category == QChar::Other_Format;
}

/// The text on the key, empty when there is none.
QString label(quint32 keyCode, const QString &characters)
{
    const auto special = std::ranges::find(specialKeyLabels, keyCode, &SpecialKeyLabel::keyCode);
    if (special != specialKeyLabels.end()) {
        return QString::fromUtf16(special->label.data(), static_cast<qsizetype>(special->label.size()));
    }
    const QList<uint> scalars = characters.toUcs4();
    return std::ranges::any_of(scalars, hasNoFace) ? QString() : characters.toUpper();
}

} // namespace

std::optional<KeyCombo> KeyCombo::fromKeyPress(const KeyPress &press)
{
    const quint32 mask = carbonMask(press.modifiers);
    const bool standsAlone = std::ranges::find(functionKeyCodes, press.keyCode) != functionKeyCodes.end();
    if (!standsAlone && (mask == 0 || mask == CarbonModifier::shift)) {
        return std::nullopt;
    }
    QString face = label(press.keyCode, press.characters);
    if (face.isEmpty()) {
        return std::nullopt;
    }
    return KeyCombo{press.keyCode, mask, std::move(face)};
}

bool KeyCombo::conflictsWith(const KeyCombo &other) const
{
    return keyCode == other.keyCode && carbonModifiers == other.carbonModifiers;
}

QString KeyCombo::modifierSymbols() const
{
    QString symbols;
    for (const ModifierRow &row : modifierRows) {
        if ((carbonModifiers & row.carbon) != 0) {
            symbols += row.symbol;
        }
    }
    return symbols;
}

QString KeyCombo::displayText() const
{
    return modifierSymbols() + keyLabel;
}

nlohmann::ordered_json keyComboToJSON(const KeyCombo &combo)
{
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    json[Key::keyCode] = combo.keyCode;
    json[Key::carbonModifiers] = combo.carbonModifiers;
    json[Key::keyLabel] = JSONReading::encoded(combo.keyLabel);
    return json;
}

KeyCombo keyComboFromJSON(const nlohmann::ordered_json &json)
{
    return {
        JSONReading::requiredUInt32(json, Key::keyCode),
        JSONReading::requiredUInt32(json, Key::carbonModifiers),
        JSONReading::requiredString(json, Key::keyLabel),
    };
}

} // namespace orvesa
