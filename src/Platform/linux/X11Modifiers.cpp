#include "Platform/linux/X11Modifiers.h"

#include "Platform/ModifierBits.h"
#include "Platform/linux/X11Connection.h"

#include <algorithm>
#include <initializer_list>
#include <span>
#include <utility>

namespace orvesa {

namespace {

// From X11/keysymdef.h, whose macros would pollute everything.
constexpr xcb_keysym_t keysymScrollLock = 0xff14;
constexpr xcb_keysym_t keysymNumLock = 0xff7f;
constexpr xcb_keysym_t keysymMetaLeft = 0xffe7;
constexpr xcb_keysym_t keysymAltLeft = 0xffe9;
constexpr xcb_keysym_t keysymAltRight = 0xffea;
constexpr xcb_keysym_t keysymSuperLeft = 0xffeb;
constexpr xcb_keysym_t keysymSuperRight = 0xffec;

struct KeyboardMap {
    xcb_keycode_t firstKey = 0;
    std::size_t columns = 0;
    std::vector<xcb_keysym_t> symbols;
    std::size_t keysPerModifier = 0;
    std::vector<xcb_keycode_t> modifierKeys;

    [[nodiscard]] std::span<const xcb_keysym_t> symbolsOf(xcb_keycode_t key) const
    {
        const std::size_t start = (key - std::size_t{firstKey}) * columns;
        if (key < firstKey || start + columns > symbols.size()) {
            return {};
        }
        return std::span(symbols).subspan(start, columns);
    }

    /// The modifier bit of the first key that gives one of the symbols; earlier symbols and columns are preferred, so
    /// that a key that means Alt by itself wins over one that means it only with Shift.
    [[nodiscard]] quint16 bitOf(std::initializer_list<xcb_keysym_t> wanted) const
    {
        for (const xcb_keysym_t symbol : wanted) {
            for (std::size_t column = 0; column < columns; ++column) {
                for (std::size_t position = 0; position < modifierKeys.size(); ++position) {
                    const auto keySymbols = symbolsOf(modifierKeys[position]);
                    if (column < keySymbols.size() && keySymbols[column] == symbol) {
                        return static_cast<quint16>(1U << (position / keysPerModifier));
                    }
                }
            }
        }
        return 0;
    }
};

/// Nothing without an answer in time.
std::optional<KeyboardMap> readKeyboardMap(X11Connection &connection)
{
    if (!connection.isValid()) {
        return std::nullopt;
    }
    xcb_connection_t *const raw = connection.connection();
    const xcb_setup_t *const setup = xcb_get_setup(raw);
    const auto count = static_cast<quint8>(setup->max_keycode - setup->min_keycode + 1);
    const quint64 lateBefore = connection.lateReplies();
    const auto keysCookie = xcb_get_keyboard_mapping(raw, setup->min_keycode, count);
    const auto modifiersCookie = xcb_get_modifier_mapping(raw);
    const auto keys = connection.reply(xcb_get_keyboard_mapping_reply, keysCookie);
    if (connection.lateReplies() != lateBefore) {
        connection.discardReply(modifiersCookie.sequence);
        return std::nullopt;
    }
    const auto modifiers = connection.reply(xcb_get_modifier_mapping_reply, modifiersCookie);
    if (connection.lateReplies() != lateBefore || !connection.isValid()) {
        return std::nullopt;
    }
    KeyboardMap map;
    if (!keys || !modifiers || modifiers->keycodes_per_modifier == 0) {
        return map;
    }
    map.firstKey = setup->min_keycode;
    map.columns = keys->keysyms_per_keycode;
    const auto *const symbols = xcb_get_keyboard_mapping_keysyms(keys.get());
    map.symbols.assign(symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(keys.get()));
    map.keysPerModifier = modifiers->keycodes_per_modifier;
    const auto *const modifierKeys = xcb_get_modifier_mapping_keycodes(modifiers.get());
    map.modifierKeys.assign(modifierKeys, modifierKeys + xcb_get_modifier_mapping_keycodes_length(modifiers.get()));
    return map;
}

} // namespace

std::optional<X11Modifiers> X11Modifiers::ask(X11Connection &connection)
{
    const auto map = readKeyboardMap(connection);
    if (!map) {
        return std::nullopt;
    }
    X11Modifiers modifiers;
    modifiers.alt = map->bitOf({keysymAltLeft, keysymAltRight, keysymMetaLeft});
    modifiers.super = map->bitOf({keysymSuperLeft, keysymSuperRight});
    modifiers.numLock = map->bitOf({keysymNumLock});
    modifiers.scrollLock = map->bitOf({keysymScrollLock});
    return modifiers;
}

X11Modifiers X11Modifiers::read(X11Connection &connection)
{
    return ask(connection).value_or(X11Modifiers{});
}

std::optional<quint16> X11Modifiers::fromCarbon(quint32 carbonModifiers) const
{
    unsigned bits = 0;
    if ((carbonModifiers & CarbonModifier::shift) != 0) {
        bits |= XCB_MOD_MASK_SHIFT;
    }
    if ((carbonModifiers & CarbonModifier::control) != 0) {
        bits |= XCB_MOD_MASK_CONTROL;
    }
    for (const auto &[wanted, bit] :
         {std::pair{CarbonModifier::option, alt}, std::pair{CarbonModifier::command, super}}) {
        if ((carbonModifiers & wanted) != 0) {
            if (bit == 0) {
                return std::nullopt;
            }
            bits |= bit;
        }
    }
    return static_cast<quint16>(bits);
}

std::vector<quint16> X11Modifiers::lockCombinations(quint16 wanted) const
{
    std::vector<quint16> combinations{0};
    for (const quint16 lock : {quint16{XCB_MOD_MASK_LOCK}, numLock, scrollLock}) {
        const bool isCounted = std::ranges::find_if(combinations, [lock](quint16 combination) {
                                   return (combination & lock) != 0;
                               }) != combinations.end();
        if (lock == 0 || (wanted & lock) != 0 || isCounted) {
            continue;
        }
        const std::size_t before = combinations.size();
        for (std::size_t index = 0; index < before; ++index) {
            combinations.push_back(static_cast<quint16>(combinations[index] | lock));
        }
    }
    return combinations;
}

std::vector<quint16> X11Modifiers::masks(quint16 wanted) const
{
    std::vector<quint16> masks = lockCombinations(wanted);
    for (quint16 &mask : masks) {
        mask = static_cast<quint16>(mask | wanted);
    }
    return masks;
}

} // namespace orvesa
