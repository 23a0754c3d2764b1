#include "Core/HotKeyService.h"

#include "Core/HotKeyError.h"

#include <utility>

namespace orvesa {

HotKeyService::HotKeyService(HotKeyPort &port) : m_port(port) {}

HotKeyService::~HotKeyService()
{
    unregisterAll();
    if (m_handlerInstalled) {
        m_port.removeHandler();
    }
}

void HotKeyService::registerHotKey(quint32 id, const KeyCombo &combo, std::function<void()> handler)
{
    installEventHandlerIfNeeded();
    if (const auto existing = m_hotKeyRefs.find(id); existing != m_hotKeyRefs.end()) {
        const HotKeyRef reference = existing->second;
        m_hotKeyRefs.erase(existing);
        m_port.unregisterHotKey(reference);
    }
    m_port.labelKey({signature, id}, combo.keyLabel);
    const HotKeyRegistration registration =
        m_port.registerHotKey(combo.keyCode, combo.carbonModifiers, {signature, id});
    if (registration.status != HotKeyStatus::noErr || registration.reference == 0) {
        throw HotKeyError(HotKeyError::Kind::registrationFailed, registration.status);
    }
    m_hotKeyRefs[id] = registration.reference;
    m_handlers[id] = std::move(handler);
}

void HotKeyService::unregisterAll()
{
    for (const auto &[id, reference] : m_hotKeyRefs) {
        m_port.unregisterHotKey(reference);
    }
    m_hotKeyRefs.clear();
    m_handlers.clear();
}

QList<quint32> HotKeyService::registered() const
{
    QList<quint32> identifiers;
    for (const auto &[id, reference] : m_hotKeyRefs) {
        identifiers.append(id);
    }
    return identifiers;
}

void HotKeyService::installEventHandlerIfNeeded()
{
    if (m_handlerInstalled) {
        return;
    }
    const qint32 status = m_port.installHandler([this](HotKeyID id) { return handleEvent(id); });
    if (status != HotKeyStatus::noErr) {
        throw HotKeyError(HotKeyError::Kind::installFailed, status);
    }
    m_handlerInstalled = true;
}

qint32 HotKeyService::handleEvent(HotKeyID id)
{
    // A copy, because the closure may register anew or unregister everything and so destroy the stored one.
    if (const auto found = m_handlers.find(id.id); found != m_handlers.end()) {
        const std::function<void()> handler = found->second;
        if (handler) {
            handler();
        }
    }
    return HotKeyStatus::noErr;
}

} // namespace orvesa
