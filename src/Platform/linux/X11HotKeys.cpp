#include "Platform/linux/X11HotKeys.h"

#include "Platform/linux/MacKeyCodes.h"
#include "Platform/linux/X11Event.h"
#include "Platform/linux/X11KeyboardExtension.h"

#include <QMetaObject>

#include <algorithm>
#include <optional>
#include <utility>

namespace orvesa {

namespace {

constexpr unsigned allModifierBits = 0xff;
constexpr quint32 macControlKeyCode = 0x3b;

std::optional<xcb_keycode_t> x11KeyCode(quint32 macKeyCode)
{
    const auto keyCode = MacKeyCodes::toX11(macKeyCode);
    return keyCode ? std::optional(static_cast<xcb_keycode_t>(*keyCode)) : std::nullopt;
}

} // namespace

X11HotKeys::X11HotKeys(X11Connection &connection)
    : m_connection(connection), m_grabs([this](xcb_keycode_t keyCode, quint16 state) { press(keyCode, state); })
{
}

X11HotKeys::~X11HotKeys()
{
    m_connection.removeEventHandler(m_token);
}

bool X11HotKeys::prepare()
{
    if (!m_connection.isValid()) {
        return false;
    }
    if (m_token == 0) {
        m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) { handle(event); });
        lookAtKeyboard();
    }
    return m_connection.isValid();
}

bool X11HotKeys::followKeyboard()
{
    if (m_followsKeyboard) {
        return true;
    }
    xcb_connection_t *const raw = m_connection.connection();
    const quint64 lateBefore = m_connection.lateReplies();
    const xcb_query_extension_reply_t *const extension = m_connection.extension(xcb_xkb_id);
    const bool isUsed =
        extension != nullptr &&
        m_connection.reply(xcb_xkb_use_extension_reply,
                           xcb_xkb_use_extension(raw, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION)) != nullptr;
    if (m_connection.lateReplies() != lateBefore || !m_connection.isValid()) {
        return false;
    }
    m_followsKeyboard = true;
    if (!isUsed) {
        return true; // the core protocol tells of changes
    }
    // A client of this extension is told of changes through its events, and no longer by the core protocol's.
    constexpr quint16 events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr quint16 symbolsAndModifiers = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(raw, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, symbolsAndModifiers, symbolsAndModifiers,
                          nullptr);
    m_keyboardEvent = extension->first_event;
    m_connection.settle();
    return true;
}

qint32 X11HotKeys::installHandler(Handler handler)
{
    if (!prepare()) {
        return HotKeyStatus::notAvailable;
    }
    m_handler = std::move(handler);
    return HotKeyStatus::noErr;
}

void X11HotKeys::removeHandler()
{
    m_handler = nullptr;
}

HotKeyRegistration X11HotKeys::registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id)
{
    if (!prepare()) {
        return {HotKeyStatus::notAvailable, 0};
    }
    // The server lets one client grab the same key twice without a word, so duplicates of our own are refused here.
    const bool isDuplicate = std::ranges::any_of(m_hotKeys, [&](const auto &entry) {
        return entry.second.macKeyCode == keyCode && entry.second.carbonModifiers == modifiers;
    });
    if (isDuplicate) {
        return {HotKeyStatus::hotKeyExists, 0};
    }
    HotKey hotKey{.macKeyCode = keyCode, .carbonModifiers = modifiers, .id = id};
    if (const qint32 status = grab(hotKey); status != HotKeyStatus::noErr) {
        return {status, 0};
    }
    m_hotKeys.emplace(++m_lastReference, hotKey);
    return {HotKeyStatus::noErr, m_lastReference};
}

qint32 X11HotKeys::unregisterHotKey(HotKeyRef reference)
{
    const auto found = m_hotKeys.find(reference);
    if (found == m_hotKeys.end()) {
        return HotKeyStatus::hotKeyInvalid;
    }
    ungrab(found->second);
    m_hotKeys.erase(found);
    return HotKeyStatus::noErr;
}

qint32 X11HotKeys::grab(HotKey &hotKey)
{
    const auto keyCode = x11KeyCode(hotKey.macKeyCode);
    if (!keyCode) {
        return HotKeyStatus::hotKeyInvalid;
    }
    if (!m_modifiers) {
        return HotKeyStatus::noErr; // it comes true when the server answers
    }
    const auto modifiers = m_modifiers->fromCarbon(hotKey.carbonModifiers);
    if (!modifiers) {
        return HotKeyStatus::hotKeyInvalid;
    }
    hotKey.keyCode = *keyCode;
    hotKey.modifiers = *modifiers;
    switch (m_grabs.grab(hotKey.keyCode, m_modifiers->masks(hotKey.modifiers))) {
    case X11KeyGrabs::Outcome::granted:
        hotKey.isGrabbed = true;
        return HotKeyStatus::noErr;
    case X11KeyGrabs::Outcome::taken:
        return HotKeyStatus::hotKeyExists;
    case X11KeyGrabs::Outcome::refused:
        return HotKeyStatus::hotKeyInvalid;
    case X11KeyGrabs::Outcome::noServer:
        break;
    }
    return HotKeyStatus::notAvailable;
}

void X11HotKeys::ungrab(HotKey &hotKey)
{
    if (hotKey.isGrabbed && m_modifiers) {
        hotKey.isGrabbed = false;
        m_grabs.ungrab(hotKey.keyCode, m_modifiers->masks(hotKey.modifiers));
    }
}

void X11HotKeys::lookAtKeyboard()
{
    m_lookScheduled = false;
    if (!m_connection.isValid()) {
        return;
    }
    if (const auto modifiers = followKeyboard() ? X11Modifiers::ask(m_connection) : std::nullopt) {
        m_lateLooks = 0;
        useModifiers(*modifiers);
        return;
    }
    if (++m_lateLooks == X11Connection::greatestLateAttempts) {
        m_lateLooks = 0;
        qWarning("OrvesaTranslate: the X server answers too late for its keyboard to be known; shortcuts are as they "
                 "were until it changes again");
        return;
    }
    m_lookScheduled = true;
    m_connection.whenServerAnswers([this, alive = std::weak_ptr<bool>(m_alive)] {
        if (!alive.expired()) {
            lookAtKeyboard();
        }
    });
}

void X11HotKeys::useModifiers(const X11Modifiers &modifiers)
{
    if (m_modifiers == modifiers) {
        return; // keys are held by their place, which no layout changes
    }
    for (auto &[reference, hotKey] : m_hotKeys) {
        ungrab(hotKey);
    }
    m_modifiers = modifiers;
    const auto control = x11KeyCode(macControlKeyCode); // which by itself has no meaning anywhere
    m_grabs.setLoneModifier(control ? modifiers.alt : quint16{0}, control.value_or(0));
    for (auto &[reference, hotKey] : m_hotKeys) {
        // One that another program holds now stays registered and comes back with a later change.
        if (const qint32 status = grab(hotKey); status != HotKeyStatus::noErr) {
            qWarning("OrvesaTranslate: the keys of shortcut number %u could not be taken (status: %d)", hotKey.id.id,
                     status);
        }
    }
}

void X11HotKeys::handle(const xcb_generic_event_t &event)
{
    const auto type = eventTypeOf(event);
    if (type == XCB_MAPPING_NOTIFY || (m_keyboardEvent != 0 && type == m_keyboardEvent)) {
        scheduleLook();
    }
}

void X11HotKeys::scheduleLook()
{
    // A change of layout sends several events; one look at the new state serves them all.
    if (m_lookScheduled) {
        return;
    }
    m_lookScheduled = true;
    QMetaObject::invokeMethod(
        &m_connection,
        [this, alive = std::weak_ptr<bool>(m_alive)] {
            if (!alive.expired()) {
                lookAtKeyboard();
            }
        },
        Qt::QueuedConnection);
}

void X11HotKeys::press(xcb_keycode_t keyCode, quint16 state)
{
    const X11Modifiers modifiers = m_modifiers.value_or(X11Modifiers{});
    const unsigned locks =
        XCB_MOD_MASK_LOCK | static_cast<unsigned>(modifiers.numLock) | static_cast<unsigned>(modifiers.scrollLock);
    const auto matches = [&](const auto &entry) {
        const HotKey &hotKey = entry.second;
        const unsigned ignored = locks & ~static_cast<unsigned>(hotKey.modifiers);
        return hotKey.keyCode == keyCode &&
               (state & allModifierBits & ~ignored) == static_cast<unsigned>(hotKey.modifiers);
    };
    const auto pressed = std::ranges::find_if(m_hotKeys, matches);
    if (pressed != m_hotKeys.end() && m_handler) {
        const Handler handler = m_handler; // it may remove itself
        (void)handler(pressed->second.id);
    }
}

} // namespace orvesa
