#include "fakes/FakeHotKeys.h"

#include <algorithm>

namespace orvesa {

qint32 FakeHotKeys::installHandler(Handler handler)
{
    ++m_installs;
    if (m_installStatus == HotKeyStatus::noErr) {
        m_handler = std::move(handler);
    }
    return m_installStatus;
}

void FakeHotKeys::removeHandler()
{
    m_handler = {};
}

HotKeyRegistration FakeHotKeys::registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id)
{
    if (m_registerAnswer) {
        return *m_registerAnswer;
    }
    const bool takenByOurselves = std::ranges::any_of(m_registrations, [&](const auto &entry) {
        return entry.second.keyCode == keyCode && entry.second.modifiers == modifiers;
    });
    if (takenByOurselves || m_takenByAnother.contains({keyCode, modifiers})) {
        return {HotKeyStatus::hotKeyExists, 0};
    }
    m_registrations[++m_lastReference] = {keyCode, modifiers, id, m_labels[id.id]};
    return {HotKeyStatus::noErr, m_lastReference};
}

qint32 FakeHotKeys::unregisterHotKey(HotKeyRef reference)
{
    m_unregistered.push_back(reference);
    return m_registrations.erase(reference) != 0 ? HotKeyStatus::noErr : HotKeyStatus::hotKeyInvalid;
}

void FakeHotKeys::labelKey(HotKeyID id, const QString &keyLabel)
{
    m_labels[id.id] = keyLabel;
}

qint32 FakeHotKeys::fire(HotKeyID id)
{
    // A copy, because the handler may have itself removed.
    const Handler handler = m_handler;
    return handler ? handler(id) : HotKeyStatus::eventNotHandled;
}

std::optional<qint32> FakeHotKeys::press(quint32 keyCode, quint32 modifiers)
{
    const auto found = std::ranges::find_if(m_registrations, [&](const auto &entry) {
        return entry.second.keyCode == keyCode && entry.second.modifiers == modifiers;
    });
    return found == m_registrations.end() ? std::nullopt : std::optional(fire(found->second.id));
}

} // namespace orvesa
