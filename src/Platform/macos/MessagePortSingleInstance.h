#pragma once

// The session's one instance, by a message port with the program's name.
//
// Main thread; handlers are called on it, from its run loop. The port is ours while this object lives; the system frees
// the name when the process ends, however it ends.

#include "Platform/SingleInstancePort.h"
#include "Platform/macos/CFOwner.h"

namespace orvesa {

class MessagePortSingleInstance final : public SingleInstancePort {
public:
    MessagePortSingleInstance() = default;
    ~MessagePortSingleInstance() override;
    Q_DISABLE_COPY_MOVE(MessagePortSingleInstance)

    [[nodiscard]] Claim claim(const QString &identifier, Handlers handlers) override;
    [[nodiscard]] bool ask(const QString &identifier, const QString &action) override;
    [[nodiscard]] std::optional<QList<quint32>> heldShortcuts(const QString &identifier) override;

private:
    static CFDataRef received(CFMessagePortRef port, SInt32 message, CFDataRef data, void *info);

    Handlers m_handlers;
    CFOwner<CFMessagePortRef> m_port;
};

} // namespace orvesa
