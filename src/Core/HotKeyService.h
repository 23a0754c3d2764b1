#pragma once

// Turns key combinations into system-wide shortcuts and runs a stored closure when one is pressed.
//
// It knows nothing of actions or prompts: callers give a number, a combination and a closure. Main thread only; the
// port must outlive the service.

#include "Models/KeyCombo.h"
#include "Platform/HotKeyPort.h"

#include <QList>

#include <functional>
#include <map>

namespace orvesa {

class HotKeyService final {
public:
    /// The four-character code 'KVHK', carried by every registration.
    static constexpr quint32 signature = 0x4B56484B;

    explicit HotKeyService(HotKeyPort &port);
    ~HotKeyService();
    Q_DISABLE_COPY_MOVE(HotKeyService)

    /// Replaces an earlier registration under the same identifier. Throws HotKeyError.
    void registerHotKey(quint32 id, const KeyCombo &combo, std::function<void()> handler);
    void unregisterAll();
    /// The identifiers of what is registered.
    [[nodiscard]] QList<quint32> registered() const;

private:
    void installEventHandlerIfNeeded();
    [[nodiscard]] qint32 handleEvent(HotKeyID id);

    HotKeyPort &m_port;
    std::map<quint32, HotKeyRef> m_hotKeyRefs;
    std::map<quint32, std::function<void()>> m_handlers;
    bool m_handlerInstalled = false;
};

} // namespace orvesa
