#include "Models/KeyCombo.h"
#include "Models/DecodingError.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;

constexpr quint32 keyA = 0;
constexpr quint32 keyK = 40;
constexpr quint32 keyEscape = 53;
constexpr KeyModifiers noModifiers;

std::optional<KeyCombo> combo(quint32 keyCode, KeyModifiers modifiers, const QString &characters)
{
    return KeyCombo::fromKeyPress({keyCode, modifiers, characters});
}

TEST(KeyComboFromPress, mapsTheFlagsToTheCarbonMask)
{
    EXPECT_EQ(combo(keyK, KeyModifier::command, u"k"_s)->carbonModifiers, 0x100U);
    EXPECT_EQ(combo(keyK, KeyModifier::option, u"k"_s)->carbonModifiers, 0x800U);
    EXPECT_EQ(combo(keyK, KeyModifier::control, u"k"_s)->carbonModifiers, 0x1000U);
    EXPECT_EQ(combo(keyK, KeyModifier::command | KeyModifier::shift, u"K"_s)->carbonModifiers, 0x300U);
}

TEST(KeyComboFromPress, ignoresCapsLockAndFunction)
{
    EXPECT_EQ(combo(keyK, KeyModifier::option | KeyModifier::capsLock | KeyModifier::function, u"k"_s),
              (KeyCombo{keyK, 0x800, u"K"_s}));
    EXPECT_EQ(combo(keyK, KeyModifier::capsLock | KeyModifier::function, u"k"_s), std::nullopt);
}

TEST(KeyComboFromPress, makesOptionAEqualToTheRecognitionDefault)
{
    EXPECT_EQ(combo(keyA, KeyModifier::option, u"a"_s), (KeyCombo{0, 0x800, u"A"_s}));
}

TEST(KeyComboFromPress, refusesNoModifierOrShiftAlone)
{
    EXPECT_EQ(combo(keyA, noModifiers, u"a"_s), std::nullopt);
    EXPECT_EQ(combo(keyA, KeyModifier::shift, u"A"_s), std::nullopt);
    EXPECT_EQ(combo(49, KeyModifier::shift, u" "_s), std::nullopt);
    EXPECT_EQ(combo(123, noModifiers, QString()), std::nullopt);
}

TEST(KeyComboFromPress, letsFunctionKeysStandAlone)
{
    const std::pair<quint32, QString> keys[] = {{122, u"F1"_s}, {120, u"F2"_s},  {99, u"F3"_s},   {118, u"F4"_s},
                                                {96, u"F5"_s},  {97, u"F6"_s},   {98, u"F7"_s},   {100, u"F8"_s},
                                                {101, u"F9"_s}, {109, u"F10"_s}, {103, u"F11"_s}, {111, u"F12"_s}};
    for (const auto &[keyCode, face] : keys) {
        EXPECT_EQ(combo(keyCode, noModifiers, QString()), (KeyCombo{keyCode, 0, face}));
        EXPECT_EQ(combo(keyCode, KeyModifier::command, QString()), (KeyCombo{keyCode, 0x100, face}));
    }
    EXPECT_EQ(combo(105, noModifiers, u"\uF710"_s), std::nullopt); // F13
}

TEST(KeyComboFromPress, takesShiftWithAFunctionKey)
{
    const auto shifted = combo(96, KeyModifier::shift, QString());
    EXPECT_EQ(shifted, (KeyCombo{96, 0x200, u"F5"_s}));
    EXPECT_EQ(shifted->displayText(), u"⇧F5"_s);
}

TEST(KeyComboFromPress, labelsSpecialKeysFromTheTable)
{
    const std::pair<quint32, QString> keys[] = {
        {49, u"Space"_s}, {36, u"↩"_s},  {76, u"⌤"_s},  {48, u"⇥"_s},  {51, u"⌫"_s},  {117, u"⌦"_s}, {123, u"←"_s},
        {124, u"→"_s},    {126, u"↑"_s}, {125, u"↓"_s}, {115, u"↖"_s}, {119, u"↘"_s}, {116, u"⇞"_s}, {121, u"⇟"_s}};
    for (const auto &[keyCode, face] : keys) {
        EXPECT_EQ(combo(keyCode, KeyModifier::command, u"\r"_s), (KeyCombo{keyCode, 0x100, face}));
        EXPECT_EQ(combo(keyCode, KeyModifier::command, u"q"_s), (KeyCombo{keyCode, 0x100, face}));
    }
}

TEST(KeyComboFromPress, refusesAKeyWithoutAFace)
{
    EXPECT_EQ(combo(keyEscape, KeyModifier::command, u"\u001B"_s), std::nullopt);
    EXPECT_EQ(combo(keyK, KeyModifier::command, QString()), std::nullopt);
    EXPECT_EQ(combo(keyK, KeyModifier::command, u"k\u0007"_s), std::nullopt);
    EXPECT_EQ(combo(keyK, KeyModifier::command, u"\u0085"_s), std::nullopt);
    EXPECT_EQ(combo(keyK, KeyModifier::command, u"\u200E"_s), std::nullopt);
}

TEST(KeyComboFromPress, labelsOtherKeysWithTheirTextInUpperCase)
{
    EXPECT_EQ(combo(keyK, KeyModifier::control, u"é"_s)->keyLabel, u"É"_s);
    EXPECT_EQ(combo(keyK, KeyModifier::control, u"ж"_s)->keyLabel, u"Ж"_s);
    EXPECT_EQ(combo(27, KeyModifier::control, u"ß"_s)->keyLabel, u"SS"_s);
    EXPECT_EQ(combo(43, KeyModifier::control, u","_s)->keyLabel, u","_s);
}

TEST(KeyComboText, showsTheModifiersInOneOrder)
{
    const KeyCombo all{keyK, 0x1B00, u"K"_s};
    EXPECT_EQ(all.modifierSymbols(), u"⌃⌥⇧⌘"_s);
    EXPECT_EQ(all.displayText(), u"⌃⌥⇧⌘K"_s);
    EXPECT_EQ(
        combo(keyK, KeyModifier::command | KeyModifier::shift | KeyModifier::option | KeyModifier::control, u"k"_s),
        all);
    EXPECT_EQ((KeyCombo{keyK, 0x1300, u"K"_s}.displayText()), u"⌃⇧⌘K"_s);
    EXPECT_EQ((KeyCombo{111, 0, u"F12"_s}.displayText()), u"F12"_s);
    EXPECT_EQ((KeyCombo{2, 0x800, u"D"_s}.displayText()), u"⌥D"_s);
}

TEST(KeyComboComparison, looksAtTheLabelForEqualityAndNotForConflict)
{
    const KeyCombo first{2, 0x800, u"D"_s};
    const KeyCombo relabelled{2, 0x800, u"Д"_s};
    EXPECT_NE(first, relabelled);
    EXPECT_TRUE(first.conflictsWith(relabelled));
    EXPECT_FALSE(first.conflictsWith({3, 0x800, u"D"_s}));
    EXPECT_FALSE(first.conflictsWith({2, 0x900, u"D"_s}));
}

TEST(KeyComboJSON, hasThreeMembersInOrder)
{
    EXPECT_EQ(keyComboToJSON({35, 2304, u"P"_s}).dump(), R"({"keyCode":35,"carbonModifiers":2304,"keyLabel":"P"})");
    EXPECT_EQ(keyComboFromJSON(keyComboToJSON({36, 0x1B00, u"↩"_s})), (KeyCombo{36, 0x1B00, u"↩"_s}));
}

TEST(KeyComboJSON, needsAllThreeMembersWithTheirTypes)
{
    for (const char *text : {
             R"({"keyCode":2,"carbonModifiers":2048})",
             R"({"keyCode":2,"keyLabel":"D"})",
             R"({"carbonModifiers":2048,"keyLabel":"D"})",
             R"({"keyCode":"2","carbonModifiers":2048,"keyLabel":"D"})",
             R"({"keyCode":2,"carbonModifiers":true,"keyLabel":"D"})",
             R"({"keyCode":-2,"carbonModifiers":2048,"keyLabel":"D"})",
             R"({"keyCode":4294967296,"carbonModifiers":2048,"keyLabel":"D"})",
             R"({"keyCode":2,"carbonModifiers":2048.5,"keyLabel":"D"})",
             R"({"keyCode":2,"carbonModifiers":2048,"keyLabel":null})",
             R"({"keyCode":2,"carbonModifiers":2048,"keyLabel":4})",
             "[2,2048,\"D\"]",
             "null",
         }) {
        EXPECT_THROW((void)keyComboFromJSON(nlohmann::ordered_json::parse(text)), DecodingError) << text;
    }
}

} // namespace
} // namespace orvesa
