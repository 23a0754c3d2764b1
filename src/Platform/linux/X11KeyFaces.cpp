#include "Platform/linux/X11KeyFaces.h"

#include "Platform/linux/KeySymbols.h"
#include "Platform/linux/X11Connection.h"
#include "Platform/linux/X11Event.h"
#include "Platform/linux/X11KeyboardExtension.h"

#include <utility>

namespace orvesa {

namespace {

constexpr unsigned groupCountMask = 0x0f;
constexpr unsigned redirectMask = 0x30;
constexpr unsigned redirectShift = 4;

/// The key's own group for an effective one that it may not have.
std::size_t ownGroup(std::size_t wanted, std::size_t groups, quint8 groupInfo)
{
    if (wanted < groups) {
        return wanted;
    }
    if ((groupInfo & XCB_XKB_GROUPS_WRAP_CLAMP_INTO_RANGE) != 0) {
        return groups - 1;
    }
    if ((groupInfo & XCB_XKB_GROUPS_WRAP_REDIRECT_INTO_RANGE) != 0) {
        const std::size_t redirected = (groupInfo & redirectMask) >> redirectShift;
        return redirected < groups ? redirected : 0;
    }
    return wanted % groups;
}

} // namespace

X11KeyFaces X11KeyFaces::read(X11Connection &connection)
{
    X11KeyFaces faces;
    if (!connection.isValid()) {
        return faces;
    }
    const auto request = xcb_xkb_get_map(connection.connection(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_MAP_PART_KEY_SYMS, 0,
                                         0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    const auto reply = connection.reply(xcb_xkb_get_map_reply, request);
    if (!reply || (reply->present & XCB_XKB_MAP_PART_KEY_SYMS) == 0) {
        return faces;
    }
    xcb_xkb_get_map_map_t map{};
    xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(reply.get()), reply->nTypes, reply->nKeySyms, reply->nKeyActions,
                               reply->totalActions, reply->totalKeyBehaviors, reply->virtualMods,
                               reply->totalKeyExplicit, reply->totalModMapKeys, reply->totalVModMapKeys, reply->present,
                               &map);
    faces.m_firstKey = reply->firstKeySym;
    for (auto key = xcb_xkb_get_map_map_syms_rtrn_iterator(reply.get(), &map); key.rem > 0;
         xcb_xkb_key_sym_map_next(&key)) {
        const auto *const symbols = xcb_xkb_key_sym_map_syms(key.data);
        Key face{.groups = static_cast<std::size_t>(key.data->groupInfo & groupCountMask),
                 .levels = key.data->width,
                 .groupInfo = key.data->groupInfo};
        face.symbols.assign(symbols, symbols + xcb_xkb_key_sym_map_syms_length(key.data));
        faces.m_keys.push_back(std::move(face));
    }
    return faces;
}

xcb_keysym_t X11KeyFaces::symbol(xcb_keycode_t keyCode, quint16 state, std::size_t level) const
{
    if (keyCode < m_firstKey || keyCode - m_firstKey >= static_cast<int>(m_keys.size())) {
        return XCB_NO_SYMBOL;
    }
    const Key &key = m_keys[static_cast<std::size_t>(keyCode - m_firstKey)];
    if (key.groups == 0 || level >= key.levels) {
        return XCB_NO_SYMBOL;
    }
    const std::size_t group = ownGroup(groupIn(state), key.groups, key.groupInfo);
    const std::size_t place = group * key.levels + level;
    return place < key.symbols.size() ? key.symbols[place] : xcb_keysym_t{XCB_NO_SYMBOL};
}

QString X11KeyFaces::characters(xcb_keycode_t keyCode, quint16 state) const
{
    const xcb_keysym_t plain = symbol(keyCode, state, 0);
    const xcb_keysym_t shifted = symbol(keyCode, state, 1);
    if (KeySymbols::isKeypad(plain)) {
        const QString text = KeySymbols::characters(shifted);
        return text.isEmpty() ? KeySymbols::characters(plain) : text;
    }
    const bool isShifted = (state & XCB_MOD_MASK_SHIFT) != 0 && shifted != XCB_NO_SYMBOL;
    return KeySymbols::characters(isShifted ? shifted : plain);
}

xcb_keysym_t X11KeyFaces::plainSymbol(xcb_keycode_t keyCode, quint16 state) const
{
    return symbol(keyCode, state, 0);
}

bool X11KeyFaces::isModifier(xcb_keycode_t keyCode, quint16 state) const
{
    return KeySymbols::isModifier(symbol(keyCode, state, 0));
}

} // namespace orvesa
