#include "desktop/Keyboard.h"

#include "desktop/Waiting.h"
#include "desktop/XSession.h"

#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <ranges>

// The header names a member with a C++ keyword.
#define explicit explicitActions
#include <xcb/xkb.h>
#undef explicit

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

xcb_keysym_t keysymForCharacter(char32_t character)
{
    return character == U'\n' ? xkb_keysym_t{XKB_KEY_Return} : xkb_utf32_to_keysym(character);
}

xcb_keysym_t keysymForName(const QString &name)
{
    static const QMap<QString, xcb_keysym_t> modifiers{{u"Ctrl"_s, XKB_KEY_Control_L},
                                                       {u"Alt"_s, XKB_KEY_Alt_L},
                                                       {u"Shift"_s, XKB_KEY_Shift_L},
                                                       {u"Super"_s, XKB_KEY_Super_L}};
    if (const auto modifier = modifiers.constFind(name); modifier != modifiers.cend())
        return *modifier;
    const QList<uint> characters = name.toLower().toUcs4();
    if (characters.size() == 1)
        return keysymForCharacter(characters.first());
    const xkb_keysym_t keysym = xkb_keysym_from_name(name.toUtf8().constData(), XKB_KEYSYM_CASE_INSENSITIVE);
    if (keysym == XKB_KEY_NoSymbol)
        throw DesktopError(u"no key is called '%1'"_s.arg(name));
    return keysym;
}

} // namespace

Keyboard::Keyboard(XSession &session) : m_session(session), m_symbols(xcb_key_symbols_alloc(session.connection()))
{
    const xcb_setup_t *setup = xcb_get_setup(session.connection());
    for (int code = setup->max_keycode; code >= setup->min_keycode; --code)
        if (xcb_key_symbols_get_keysym(m_symbols, static_cast<xcb_keycode_t>(code), 0) == XCB_NO_SYMBOL)
            m_spare.push_back(static_cast<xcb_keycode_t>(code));
}

Keyboard::~Keyboard()
{
    xcb_key_symbols_free(m_symbols);
}

void Keyboard::queue(xcb_keycode_t code, bool down)
{
    xcb_test_fake_input(m_session.connection(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, XCB_CURRENT_TIME,
                        XCB_NONE, 0, 0, 0);
}

void Keyboard::send(xcb_keycode_t code, bool down)
{
    queue(code, down);
    m_session.synchronize();
}

Keyboard::Stroke Keyboard::strokeFor(xcb_keysym_t keysym)
{
    if (const auto bound = m_bound.constFind(keysym); bound != m_bound.cend())
        return {*bound, false};
    const xcb_setup_t *setup = xcb_get_setup(m_session.connection());
    for (const int level : {0, 1})
        for (int code = setup->min_keycode; code <= setup->max_keycode; ++code)
            if (xcb_key_symbols_get_keysym(m_symbols, static_cast<xcb_keycode_t>(code), level) == keysym)
                return {static_cast<xcb_keycode_t>(code), level == 1};
    return bindSpareKey(keysym);
}

Keyboard::Stroke Keyboard::bindSpareKey(xcb_keysym_t keysym)
{
    // A spare key is never given a second meaning: programs read the layout late, and would see the wrong one.
    if (m_spare.empty())
        throw DesktopError(u"the keyboard has no spare key left for further characters"_s);
    const xcb_keycode_t code = m_spare.back();
    m_spare.pop_back();
    const std::array<xcb_keysym_t, 2> symbols{keysym, keysym};
    xcb_change_keyboard_mapping(m_session.connection(), 1, code, static_cast<quint8>(symbols.size()), symbols.data());
    m_session.synchronize();
    m_bound.insert(keysym, code);
    return {code, false};
}

QStringList Keyboard::keysOf(const QString &combination)
{
    QStringList names = combination.split(u'+', Qt::SkipEmptyParts);
    if (combination == u"+"_s || combination.endsWith(u"++"_s))
        names.append(u"plus"_s);
    return names;
}

void Keyboard::pressAtOnce(const QString &combination)
{
    std::vector<xcb_keycode_t> codes;
    for (const QString &name : keysOf(combination))
        codes.push_back(strokeFor(keysymForName(name)).code);
    for (const xcb_keycode_t code : codes)
        queue(code, true);
    for (const xcb_keycode_t code : std::views::reverse(codes))
        queue(code, false);
    m_session.synchronize();
}

void Keyboard::press(const QString &combination)
{
    const QStringList names = keysOf(combination);
    for (const QString &name : names)
        keyDown(name);
    for (const QString &name : std::views::reverse(names))
        keyUp(name);
}

void Keyboard::pressByHand(const QString &combination, std::chrono::milliseconds hold)
{
    QStringList names = keysOf(combination);
    const QStringList down = names;
    std::ranges::reverse(names);
    turnByHand(down, hold, names);
}

void Keyboard::rollByHand(const QString &combination)
{
    const QStringList names = keysOf(combination);
    turnByHand(names, std::chrono::milliseconds::zero(), names);
}

void Keyboard::turnByHand(const QStringList &down, std::chrono::milliseconds hold, const QStringList &up)
{
    constexpr std::chrono::milliseconds gap{10};
    for (const QString &name : down) {
        keyDown(name);
        processEventsFor(gap);
    }
    processEventsFor(hold);
    for (const QString &name : up) {
        keyUp(name);
        processEventsFor(gap);
    }
}

void Keyboard::pressCode(xcb_keycode_t code)
{
    send(code, true);
    send(code, false);
}

void Keyboard::turnCode(xcb_keycode_t code, Turn turn)
{
    send(code, turn == Turn::down);
}

void Keyboard::useKeyboardExtension()
{
    xcb_connection_t *const connection = m_session.connection();
    const XReply<xcb_xkb_use_extension_reply_t> reply(xcb_xkb_use_extension_reply(
        connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
    if (!reply || reply->supported == 0)
        throw DesktopError(u"this X server has no keyboard extension"_s);
}

void Keyboard::lock(quint8 modifiers)
{
    constexpr quint8 all = 0xff;
    xcb_connection_t *const connection = m_session.connection();
    useKeyboardExtension();
    xcb_xkb_latch_lock_state(connection, XCB_XKB_ID_USE_CORE_KBD, all, modifiers, 0, 0, 0, 0, 0);
    m_session.synchronize();
    const XReply<xcb_query_pointer_reply_t> state(
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, m_session.root()), nullptr));
    if (!state || (state->mask & all) != modifiers)
        throw DesktopError(u"the modifiers could not be locked"_s);
}

void Keyboard::lockLayout(quint8 number)
{
    xcb_connection_t *const connection = m_session.connection();
    useKeyboardExtension();
    xcb_xkb_latch_lock_state(connection, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, number, 0, 0, 0);
    m_session.synchronize();
    const XReply<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(connection, xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!state || state->group != number)
        throw DesktopError(u"the layout could not be chosen"_s);
}

void Keyboard::keyDown(const QString &key)
{
    send(strokeFor(keysymForName(key)).code, true);
}

void Keyboard::keyUp(const QString &key)
{
    send(strokeFor(keysymForName(key)).code, false);
}

void Keyboard::type(const QString &text)
{
    const xcb_keycode_t shift = strokeFor(XKB_KEY_Shift_L).code;
    for (const uint character : text.toUcs4()) {
        const Stroke stroke = strokeFor(keysymForCharacter(character));
        if (stroke.shift)
            send(shift, true);
        send(stroke.code, true);
        send(stroke.code, false);
        if (stroke.shift)
            send(shift, false);
    }
}

Keyboard::Combination Keyboard::combinationFor(const QString &combination)
{
    static const QMap<QString, quint16> masks{{u"Ctrl"_s, XCB_MOD_MASK_CONTROL},
                                              {u"Alt"_s, XCB_MOD_MASK_1},
                                              {u"Shift"_s, XCB_MOD_MASK_SHIFT},
                                              {u"Super"_s, XCB_MOD_MASK_4}};
    QStringList names = combination.split(u'+', Qt::SkipEmptyParts);
    const xcb_keycode_t code = strokeFor(keysymForName(names.takeLast())).code;
    quint16 modifiers = 0;
    for (const QString &name : names)
        modifiers = static_cast<quint16>(modifiers | masks.value(name));
    return {modifiers, code};
}

bool Keyboard::isGrabRefused(const Combination &combination)
{
    xcb_connection_t *connection = m_session.connection();
    const XReply<xcb_generic_error_t> refusal(xcb_request_check(
        connection, xcb_grab_key_checked(connection, 1, m_session.root(), combination.modifiers, combination.code,
                                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    return refusal && refusal->error_code == XCB_ACCESS;
}

bool Keyboard::isTaken(const QString &combination)
{
    const Combination wanted = combinationFor(combination);
    // With the server grabbed nobody else can come between, and find the combination taken by this very look.
    xcb_connection_t *connection = m_session.connection();
    xcb_grab_server(connection);
    const bool isRefused = isGrabRefused(wanted);
    xcb_ungrab_key(connection, wanted.code, m_session.root(), wanted.modifiers);
    xcb_ungrab_server(connection);
    m_session.synchronize();
    return isRefused;
}

void Keyboard::take(const QString &combination)
{
    if (isGrabRefused(combinationFor(combination)))
        throw DesktopError(u"%1 is taken already"_s.arg(combination));
}

std::vector<xcb_keycode_t> Keyboard::keysDown() const
{
    const XReply<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(m_session.connection(), xcb_query_keymap(m_session.connection()), nullptr));
    std::vector<xcb_keycode_t> codes;
    for (unsigned code = 0; reply && code < 256; ++code)
        if ((reply->keys[code / 8] >> (code % 8)) & 1U)
            codes.push_back(static_cast<xcb_keycode_t>(code));
    return codes;
}

} // namespace orvesa::desktop
