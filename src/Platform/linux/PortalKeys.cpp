#include "Platform/linux/PortalKeys.h"

#include "Platform/ModifierBits.h"
#include "Platform/linux/KeySymbols.h"
#include "Platform/linux/MacKeyCodes.h"
#include "Platform/linux/X11Event.h"
#include "Platform/linux/X11KeyboardExtension.h"

#include <QChar>
#include <QList>
#include <QPointer>

#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include <xkbcommon/xkbcommon.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// A change of layouts comes in several pieces, and programs that type for others have a keymap of theirs in use for
/// moments.
constexpr std::chrono::milliseconds settlingTime{1000};
constexpr unsigned groupShift = 13;
/// Every group that a keyboard can have, as the state of a key event holds it.
constexpr std::array<quint16, 4> groupStates{0, 1U << groupShift, 2U << groupShift, 3U << groupShift};

/// The symbol of a key in the layout that programs without a display take for granted.
xkb_keysym_t defaultSymbol(xcb_keycode_t keyCode)
{
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                             &xkb_context_unref);
    if (!context) {
        return XKB_KEY_NoSymbol;
    }
    const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
        xkb_keymap_new_from_names(context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS), &xkb_keymap_unref);
    const xkb_keysym_t *symbols = nullptr;
    const bool isKnown = keymap && xkb_keymap_key_get_syms_by_level(keymap.get(), keyCode, 0, 0, &symbols) == 1;
    return isKnown ? symbols[0] : xkb_keysym_t{XKB_KEY_NoSymbol};
}

/// Desktops find shortcuts by Latin letters, whatever layout is in use. A key that types nothing has but its name.
bool servesShortcuts(xcb_keysym_t symbol)
{
    constexpr uint firstBeyondLatin1 = 0x100;
    const QList<uint> scalars = KeySymbols::characters(symbol).toUcs4();
    const uint scalar = scalars.isEmpty() ? 0 : scalars.first();
    return symbol != XKB_KEY_NoSymbol && (scalar < firstBeyondLatin1 || QChar::script(scalar) == QChar::Script_Latin);
}

bool isLatinLetter(const QString &label)
{
    return label.size() == 1 && label.front() >= u'A' && label.front() <= u'Z';
}

struct Place {
    xcb_keycode_t keyCode = 0;
    quint16 state = 0; ///< with the group
};

std::optional<Place> placeWithFace(const X11KeyFaces &faces, const QString &label)
{
    if (label.size() != 1 || !label.front().isLetter()) {
        return std::nullopt;
    }
    for (const quint16 state : groupStates) {
        for (const MacKeyCodes::Pair &pair : MacKeyCodes::all()) {
            const auto keyCode = static_cast<xcb_keycode_t>(MacKeyCodes::toX11(pair.macCode).value_or(0));
            if (faces.characters(keyCode, state).toUpper() == label) {
                return Place{keyCode, state};
            }
        }
    }
    return std::nullopt;
}

std::optional<Place> placeOf(const X11KeyFaces &faces, xcb_keycode_t keyCode, quint32 carbonModifiers,
                             const QString &label)
{
    const bool isShifted = (carbonModifiers & CarbonModifier::shift) != 0;
    for (const quint16 state : groupStates) {
        const auto typed = static_cast<quint16>(isShifted ? state | XCB_MOD_MASK_SHIFT : state);
        if (!label.isEmpty() && faces.characters(keyCode, typed).toUpper() == label) {
            return Place{keyCode, state};
        }
    }
    // Recorded with other layouts, or the program's own choice: what the user is shown is what is to be pressed.
    return placeWithFace(faces, label);
}

} // namespace

PortalKeys::PortalKeys(X11Connection &connection, ChangeHandler changed) : m_connection(connection)
{
    m_settling.setSingleShot(true);
    m_settling.setInterval(settlingTime);
    QObject::connect(&m_settling, &QTimer::timeout, &m_settling, std::move(changed));
}

PortalKeys::~PortalKeys()
{
    m_connection.removeEventHandler(m_token);
}

void PortalKeys::listen()
{
    if (m_token != 0 || !m_connection.isValid()) {
        return;
    }
    xcb_connection_t *const raw = m_connection.connection();
    const xcb_query_extension_reply_t *const extension = m_connection.extension(xcb_xkb_id);
    if (extension == nullptr ||
        !m_connection.reply(xcb_xkb_use_extension_reply,
                            xcb_xkb_use_extension(raw, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION))) {
        return; // perhaps only for now
    }
    m_token = m_connection.addEventHandler([this, keyboard = extension->first_event](const xcb_generic_event_t &event) {
        if (eventTypeOf(event) == keyboard) {
            m_settling.start();
        }
    });
    constexpr quint16 events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    xcb_xkb_select_events(raw, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, XCB_XKB_MAP_PART_KEY_SYMS,
                          XCB_XKB_MAP_PART_KEY_SYMS, nullptr);
    m_connection.settle();
}

QString PortalKeys::trigger(quint32 macKeyCode, quint32 carbonModifiers, const QString &label)
{
    return write(macKeyCode, carbonModifiers, label, Faceless::taken);
}

QString PortalKeys::triggerWithFace(quint32 macKeyCode, quint32 carbonModifiers, const QString &label)
{
    return write(macKeyCode, carbonModifiers, label, Faceless::leftOut);
}

QString PortalKeys::write(quint32 macKeyCode, quint32 carbonModifiers, const QString &label, Faceless faceless)
{
    const auto keyCode = MacKeyCodes::toX11(macKeyCode);
    const xcb_keysym_t symbol =
        keyCode ? symbolOf(static_cast<xcb_keycode_t>(*keyCode), carbonModifiers, label, faceless) : XKB_KEY_NoSymbol;
    std::array<char, 64> name{};
    if (symbol == XKB_KEY_NoSymbol || xkb_keysym_get_name(symbol, name.data(), name.size()) <= 0) {
        return {};
    }
    QString keys;
    for (const auto &[bit, word] :
         {std::pair{CarbonModifier::control, u"CTRL+"_s}, std::pair{CarbonModifier::option, u"ALT+"_s},
          std::pair{CarbonModifier::shift, u"SHIFT+"_s}, std::pair{CarbonModifier::command, u"LOGO+"_s}}) {
        if ((carbonModifiers & bit) != 0) {
            keys += word;
        }
    }
    return keys + QString::fromLatin1(name.data());
}

X11KeyFaces PortalKeys::readFaces()
{
    if (m_isServerAwaited) {
        return {}; // one wait is enough for all keys
    }
    const quint64 lateBefore = m_connection.lateReplies();
    listen();
    X11KeyFaces faces = m_token != 0 ? X11KeyFaces::read(m_connection) : X11KeyFaces();
    if (m_connection.lateReplies() != lateBefore) {
        m_isServerAwaited = true;
        m_connection.whenServerAnswers([this, settling = QPointer<QTimer>(&m_settling)] {
            if (settling) {
                m_isServerAwaited = false;
                settling->start();
            }
        });
    }
    return faces;
}

xcb_keysym_t PortalKeys::symbolOf(xcb_keycode_t keyCode, quint32 carbonModifiers, const QString &label,
                                  Faceless faceless)
{
    const X11KeyFaces faces = readFaces();
    const std::optional<Place> shown = placeOf(faces, keyCode, carbonModifiers, label);
    if (!shown && faceless == Faceless::leftOut) {
        return XKB_KEY_NoSymbol;
    }
    if (!shown && isLatinLetter(label)) {
        return label.front().toLower().unicode(); // which is its symbol
    }
    const Place place = shown.value_or(Place{keyCode, 0});
    if (const xcb_keysym_t symbol = faces.plainSymbol(place.keyCode, place.state); servesShortcuts(symbol)) {
        return symbol;
    }
    for (const quint16 state : groupStates) {
        if (const xcb_keysym_t symbol = faces.plainSymbol(place.keyCode, state); servesShortcuts(symbol)) {
            return symbol;
        }
    }
    return defaultSymbol(place.keyCode);
}

} // namespace orvesa
