#include "Platform/macos/MessagePortSingleInstance.h"

#include "Platform/macos/CFConversion.h"

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// Each way; a request and its answer take two seconds at most.
constexpr CFTimeInterval boundInSeconds = 1;

/// The kinds of message.
constexpr SInt32 actionMessage = 0;
constexpr SInt32 heldShortcutsMessage = 1;

CFOwner<CFStringRef> portName(const QString &identifier)
{
    return CFConversion::string(identifier + ".instance"_L1);
}

CFOwner<CFMessagePortRef> remotePort(const QString &identifier)
{
    const CFOwner<CFStringRef> name = portName(identifier);
    return CFOwner(CFMessagePortCreateRemote(kCFAllocatorDefault, name.get()));
}

/// What the running instance answers to a message; nothing when none does.
std::optional<QByteArray> answerTo(const QString &identifier, SInt32 message, const QString &text)
{
    const CFOwner<CFMessagePortRef> port = remotePort(identifier);
    if (!port) {
        return std::nullopt;
    }
    const CFOwner<CFDataRef> request = CFConversion::data(text.toUtf8());
    CFOwner<CFDataRef> answer;
    const SInt32 status = CFMessagePortSendRequest(port.get(), message, request.get(), boundInSeconds, boundInSeconds,
                                                   kCFRunLoopDefaultMode, answer.receiver());
    if (status != kCFMessagePortSuccess) {
        return std::nullopt;
    }
    return answer ? CFConversion::bytes(answer.get()) : QByteArray();
}

/// An answer for the system to release.
CFDataRef numbers(const QList<quint32> &values)
{
    QByteArrayList texts;
    for (const quint32 value : values) {
        texts.append(QByteArray::number(value));
    }
    return CFConversion::data(texts.join(',')).release();
}

} // namespace

MessagePortSingleInstance::~MessagePortSingleInstance()
{
    if (m_port) {
        CFMessagePortInvalidate(m_port.get());
    }
}

SingleInstancePort::Claim MessagePortSingleInstance::claim(const QString &identifier, Handlers handlers)
{
    const CFOwner<CFStringRef> name = portName(identifier);
    CFMessagePortContext context = {0, this, nullptr, nullptr, nullptr};
    CFOwner port(CFMessagePortCreateLocal(kCFAllocatorDefault, name.get(), &MessagePortSingleInstance::received,
                                          &context, nullptr));
    if (!port) {
        return remotePort(identifier) ? Claim::runsAlready : Claim::unavailable;
    }
    m_port = std::move(port);
    m_handlers = std::move(handlers);
    const CFOwner source(CFMessagePortCreateRunLoopSource(kCFAllocatorDefault, m_port.get(), 0));
    CFRunLoopAddSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
    return Claim::owned;
}

bool MessagePortSingleInstance::ask(const QString &identifier, const QString &action)
{
    return answerTo(identifier, actionMessage, action).has_value();
}

std::optional<QList<quint32>> MessagePortSingleInstance::heldShortcuts(const QString &identifier)
{
    const std::optional<QByteArray> answer = answerTo(identifier, heldShortcutsMessage, QString());
    if (!answer) {
        return std::nullopt;
    }
    QList<quint32> identifiers;
    for (const QByteArray &number : answer->isEmpty() ? QList<QByteArray>() : answer->split(',')) {
        identifiers.append(number.toUInt());
    }
    return identifiers;
}

CFDataRef MessagePortSingleInstance::received(CFMessagePortRef port, SInt32 message, CFDataRef data, void *info)
{
    Q_UNUSED(port)
    const Handlers handlers = static_cast<const MessagePortSingleInstance *>(info)->m_handlers;
    if (message == heldShortcutsMessage) {
        return numbers(handlers.heldShortcuts ? handlers.heldShortcuts() : QList<quint32>());
    }
    const QString action = data == nullptr ? QString() : QString::fromUtf8(CFConversion::bytes(data));
    if (action.isEmpty() && handlers.activate) {
        handlers.activate();
    } else if (!action.isEmpty() && handlers.perform) {
        handlers.perform(action);
    }
    return nullptr; // an empty answer
}

} // namespace orvesa
