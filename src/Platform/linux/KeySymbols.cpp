#include "Platform/linux/KeySymbols.h"

#include <algorithm>
#include <array>
#include <utility>

#include <xkbcommon/xkbcommon.h>

namespace orvesa::KeySymbols {

namespace {

constexpr auto deadAccents = std::to_array<std::pair<xkb_keysym_t, char16_t>>({
    {XKB_KEY_dead_grave, u'`'},
    {XKB_KEY_dead_acute, u'\u00B4'},
    {XKB_KEY_dead_circumflex, u'^'},
    {XKB_KEY_dead_tilde, u'~'},
    {XKB_KEY_dead_macron, u'\u00AF'},
    {XKB_KEY_dead_breve, u'\u02D8'},
    {XKB_KEY_dead_abovedot, u'\u02D9'},
    {XKB_KEY_dead_diaeresis, u'\u00A8'},
    {XKB_KEY_dead_abovering, u'\u02DA'},
    {XKB_KEY_dead_doubleacute, u'\u02DD'},
    {XKB_KEY_dead_caron, u'\u02C7'},
    {XKB_KEY_dead_cedilla, u'\u00B8'},
    {XKB_KEY_dead_ogonek, u'\u02DB'},
});

bool isBetween(quint32 symbol, quint32 first, quint32 last)
{
    return symbol >= first && symbol <= last;
}

} // namespace

QString characters(quint32 symbol)
{
    const auto *const dead = std::ranges::find(deadAccents, symbol, &std::pair<xkb_keysym_t, char16_t>::first);
    if (dead != deadAccents.end()) {
        return {QChar(dead->second)};
    }
    const char32_t scalar = xkb_keysym_to_utf32(symbol);
    return scalar == 0 ? QString() : QString::fromUcs4(&scalar, 1);
}

bool isModifier(quint32 symbol)
{
    return isBetween(symbol, XKB_KEY_Shift_L, XKB_KEY_Hyper_R) ||
           isBetween(symbol, XKB_KEY_ISO_Lock, XKB_KEY_ISO_Level5_Lock) || symbol == XKB_KEY_Mode_switch ||
           symbol == XKB_KEY_Num_Lock || symbol == XKB_KEY_Scroll_Lock || symbol == XKB_KEY_Multi_key;
}

bool isKeypad(quint32 symbol)
{
    return isBetween(symbol, XKB_KEY_KP_Space, XKB_KEY_KP_Equal);
}

} // namespace orvesa::KeySymbols
